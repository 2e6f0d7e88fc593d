#include "ReportWorkbook.h"

#include <xlsxwriter.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>

namespace ReportWorkbook {

namespace {

// The spreadsheet keeps numbers as binary fractions: the one place an amount leaves fixed
// point. Whole grosze over 100 print back exactly with the 16 digits the file holds.
double number(Money amount)
{
    return double(amount.toGrosze()) / 100.0;
}

class Writer {
public:
    Writer(lxw_workbook *workbook, lxw_worksheet *sheet) : m_book(workbook), m_sheet(sheet)
    {
        m_bold = workbook_add_format(m_book);
        format_set_bold(m_bold);
        m_title = workbook_add_format(m_book);
        format_set_bold(m_title);
        format_set_font_size(m_title, 14);
        m_caption = workbook_add_format(m_book);
        format_set_bold(m_caption);
        format_set_bottom(m_caption, LXW_BORDER_THIN);
        m_date = workbook_add_format(m_book);
        format_set_num_format(m_date, "dd-mm-yyyy");
        m_money = workbook_add_format(m_book);
        format_set_num_format(m_money, "#,##0.00");
        m_total = workbook_add_format(m_book);
        format_set_num_format(m_total, "#,##0.00");
        format_set_bold(m_total);
        format_set_top(m_total, LXW_BORDER_THIN);
        m_totalCaption = workbook_add_format(m_book);
        format_set_bold(m_totalCaption);
        format_set_top(m_totalCaption, LXW_BORDER_THIN);
    }

    void text(lxw_row_t row, lxw_col_t col, const QString &s, lxw_format *format = nullptr)
    {
        check(worksheet_write_string(m_sheet, row, col, s.toUtf8().constData(), format));
    }

    void write(const Reports::Report &report)
    {
        const Reports::Heading &h = report.heading;
        check(worksheet_set_column(m_sheet, 0, 0, 6, nullptr));
        check(worksheet_set_column(m_sheet, 1, 1, 12, nullptr));
        check(worksheet_set_column(m_sheet, 2, 3, 40, nullptr));
        check(worksheet_set_column(m_sheet, 4, 4, 16, nullptr));
        text(0, 0, h.firmName, m_bold);
        for (int i = 0; i < h.firmAddress.size() && i < 2; ++i)
            text(lxw_row_t(1 + i), 0, h.firmAddress.at(i));
        text(3, 0, h.title(), m_title);
        text(4, 0, QStringLiteral("KRYTERIA"), m_bold);
        const QStringList criteria = h.criteriaLines();
        for (int i = 0; i < criteria.size(); ++i)
            text(lxw_row_t(5 + i), 0, criteria.at(i));
        text(8, 0, h.dateLine());

        const char *const captions[] = {"LP", "Data", "Kontrahent", "Treść", "Wartość"};
        for (lxw_col_t c = 0; c < 5; ++c)
            check(worksheet_write_string(m_sheet, TableRow, c, captions[c], m_caption));
        lxw_row_t row = TableRow + 1;
        double lp = 0;
        for (const Reports::ReportRow &r : report.list.rows) {
            check(worksheet_write_number(m_sheet, row, 0, ++lp, nullptr));
            if (r.date.isValid() && r.date.year() >= 1900 && r.date.year() <= 9999) {
                lxw_datetime d{r.date.year(), r.date.month(), r.date.day(), 0, 0, 0};
                check(worksheet_write_datetime(m_sheet, row, 1, &d, m_date));
            }
            text(row, 2, r.contractor);
            text(row, 3, r.title);
            check(worksheet_write_number(m_sheet, row, 4, number(r.amount), m_money));
            ++row;
        }
        text(row, 1, Reports::TotalCaption, m_totalCaption);
        for (lxw_col_t c : {lxw_col_t(0), lxw_col_t(2), lxw_col_t(3)})
            check(worksheet_write_blank(m_sheet, row, c, m_totalCaption));
        if (report.list.rows.isEmpty()) {
            check(worksheet_write_number(m_sheet, row, 4, 0, m_total));
        } else {
            // A sum, so that a row changed in the spreadsheet changes the total; its value
            // is stored too, for readers that do not calculate.
            const QByteArray formula = QStringLiteral("=SUM(E%1:E%2)").arg(TableRow + 2).arg(row).toLatin1();
            check(worksheet_write_formula_num(m_sheet, row, 4, formula.constData(), m_total,
                                              number(report.list.total)));
        }
    }

    lxw_error error() const { return m_error; }

private:
    void check(lxw_error e)
    {
        if (e != LXW_NO_ERROR && m_error == LXW_NO_ERROR)
            m_error = e;
    }

    lxw_workbook *m_book;
    lxw_worksheet *m_sheet;
    lxw_format *m_bold, *m_title, *m_caption, *m_date, *m_money, *m_total, *m_totalCaption;
    lxw_error m_error = LXW_NO_ERROR;
};

} // namespace

bool write(const QString &path, const Reports::Report &report, SafeOutput::Existing existing, QString *error)
{
    const auto fail = [&](const QString &why) {
        if (error)
            *error = why;
        return false;
    };
    // The library writes by name: into a temporary file beside the target, moved into
    // place only when the workbook is whole.
    SafeOutput::File file(path, existing);
    if (!file.isOpen())
        return fail(file.error());
    file.device()->close();
    QByteArray tmpdir = QFile::encodeName(QDir::tempPath());
    // Rows go to a scratch file as they are written, so a long register takes little memory.
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    options.tmpdir = tmpdir.data();
    lxw_workbook *book = workbook_new_opt(QFile::encodeName(file.tempPath()).constData(), &options);
    if (!book)
        return fail(QStringLiteral("Nie można utworzyć pliku %1.").arg(QDir::toNativeSeparators(path)));
    lxw_worksheet *sheet = workbook_add_worksheet(book, "Raport");
    if (!sheet) {
        workbook_close(book);
        return fail(QStringLiteral("Nie można utworzyć arkusza."));
    }
    Writer writer(book, sheet);
    writer.write(report);
    const lxw_error written = writer.error();
    const lxw_error closed = workbook_close(book);
    if (written != LXW_NO_ERROR)
        return fail(errorText(written));
    if (closed != LXW_NO_ERROR)
        return fail(errorText(closed));
    if (!file.commit())
        return fail(file.error());
    return true;
}

QString errorText(int code)
{
    switch (code) {
    case LXW_ERROR_MEMORY_MALLOC_FAILED:
        return QStringLiteral("Zabrakło pamięci na arkusz.");
    case LXW_ERROR_CREATING_XLSX_FILE:
        return QStringLiteral("Nie można utworzyć pliku arkusza (brak uprawnień lub miejsca na dysku).");
    case LXW_ERROR_CREATING_TMPFILE:
    case LXW_ERROR_READING_TMPFILE:
        return QStringLiteral("Nie można zapisać ani odczytać pliku roboczego w folderze plików tymczasowych.");
    case LXW_ERROR_ZIP_FILE_OPERATION:
    case LXW_ERROR_ZIP_PARAMETER_ERROR:
    case LXW_ERROR_ZIP_BAD_ZIP_FILE:
    case LXW_ERROR_ZIP_INTERNAL_ERROR:
    case LXW_ERROR_ZIP_FILE_ADD:
    case LXW_ERROR_ZIP_CLOSE:
        return QStringLiteral("Nie udało się zapisać pliku arkusza (brak miejsca na dysku lub błąd zapisu).");
    case LXW_ERROR_32_STRING_LENGTH_EXCEEDED:
    case LXW_ERROR_128_STRING_LENGTH_EXCEEDED:
    case LXW_ERROR_255_STRING_LENGTH_EXCEEDED:
    case LXW_ERROR_MAX_STRING_LENGTH_EXCEEDED:
        return QStringLiteral("Tekst jest za długi dla komórki arkusza.");
    case LXW_ERROR_WORKSHEET_INDEX_OUT_OF_RANGE:
        return QStringLiteral("Raport ma więcej wierszy lub kolumn, niż mieści arkusz.");
    default:
        return QStringLiteral("Błąd zapisu arkusza nr %1.").arg(code);
    }
}

QString freeFileName(const QString &folder, const QString &name)
{
    const QDir dir(folder);
    QString path = dir.filePath(name + QStringLiteral(".xlsx"));
    for (int n = 1; QFileInfo::exists(path); ++n)
        path = dir.filePath(name + QLatin1Char('_') + QString::number(n) + QStringLiteral(".xlsx"));
    return path;
}

} // namespace ReportWorkbook
