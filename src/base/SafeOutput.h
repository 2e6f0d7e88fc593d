#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class QIODevice;
class QTemporaryFile;

// Every file the program writes for the user (PDF, workbook, Elixir file, export file)
// goes through here: the target is checked first, the content is written to a temporary
// file beside it and moved into place only when complete, so a failed write leaves the
// old file as it was. The program's own data (the open firm, any firm database, the
// users file, the settings) is never a target.
namespace SafeOutput {

// What may happen to a file already at the target.
enum class Existing {
    Keep,    // the target must be a new file; an existing one is refused
    Replace, // the user agreed to replace it (in a window or with --nadpisz)
};

// Empty when output may go to `path`; otherwise the Polish reason it may not.
QString refusal(const QString &path, Existing existing);

// Whether the file starts as an SQLite database does (a firm file, whatever its name).
bool isDatabaseFile(const QString &path);

// A temporary file beside the target. Write through device(), or let a library write
// to tempPath() by name; commit() then moves it into place. Dropped without commit(),
// the temporary file is removed and the target is untouched.
class File {
public:
    File(const QString &target, Existing existing);
    ~File();
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    // False, with the reason in error(), when the target is refused or no temporary
    // file could be made beside it.
    bool isOpen() const { return m_error.isEmpty(); }
    QIODevice *device();
    QString tempPath() const;
    QString target() const { return m_target; }

    // Moves the finished file into place. False, with the reason in error(), when a
    // write failed or the move did; the old file then stays as it was.
    bool commit();
    QString error() const { return m_error; }

private:
    bool failWith(const QString &why);
    QString m_target;
    Existing m_existing;
    std::unique_ptr<QTemporaryFile> m_temp;
    QString m_error;
};

// The whole content at once; false with the Polish reason in `error`.
bool write(const QString &path, const QByteArray &data, Existing existing, QString *error);

} // namespace SafeOutput
