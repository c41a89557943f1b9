// Files that a test lays out for the programs it starts.
#pragma once

class QByteArray;
class QString;

/// Makes the file and its folder, or ends the test.
void writeFile(const QString &path, const QByteArray &content);
