// Files that end with their test.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

struct TemporaryFiles {
    /// Writes the file of that relative path, and makes its folders.
    void write(const QString &path, const QByteArray &content) const
    {
        const QString file = folder.filePath(path);
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QFile target(file);
        QVERIFY(target.open(QIODevice::WriteOnly) && target.write(content) == content.size());
    }

    QTemporaryDir folder;
};
