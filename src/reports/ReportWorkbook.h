#pragma once

#include "ReportRegister.h"
#include "SafeOutput.h"

#include <QString>

// A report saved as an .xlsx workbook for LibreOffice Calc or Excel: the heading and the
// criteria above the table, dates as dates, amounts as numbers in a money format, the
// "Ogółem" row as a sum that the spreadsheet can recompute.
namespace ReportWorkbook {

// Writes the workbook to `path`; on failure a file already there is as it was, none is
// left when there was none, and `error` says why in Polish.
bool write(const QString &path, const Reports::Report &report, SafeOutput::Existing existing,
           QString *error = nullptr);
// The library's error code in words.
QString errorText(int code);

// `folder`/`name`.xlsx, or with "_1", "_2"... after the name when that file exists.
QString freeFileName(const QString &folder, const QString &name);

// The rows above the table (firm, title, criteria, day, a blank row, the captions): the
// first document is on the row after them.
inline constexpr int TableRow = 11; // 0-based row of the column captions

} // namespace ReportWorkbook
