#pragma once

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

/// The project's texts, read as they stand in the source folder.
namespace Documentation {

inline QString textOf(const QString& path) {
    QFile file(QStringLiteral(EA_SOURCE_DIR "/") + path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// README.md and the pages of docs/.
inline QStringList pages() {
    QStringList pages{QStringLiteral("README.md")};
    const QDir folder(QStringLiteral(EA_SOURCE_DIR "/docs"));
    for (const QString& name : folder.entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name)) {
        pages.append("docs/" + name);
    }
    return pages;
}

/// The fenced blocks of a page in a language, such as "cpp".
inline QStringList blocks(const QString& page, const QString& language) {
    QStringList found;
    const QStringList parts = ('\n' + textOf(page)).split(QStringLiteral("\n```"));
    for (int i = 1; i < parts.size(); i += 2) { // Every other fence opens a block.
        const QString& part = parts.at(i);
        if (part.startsWith(language + '\n')) {
            found.append(part.mid(language.size() + 1));
        }
    }
    return found;
}

} // namespace Documentation
