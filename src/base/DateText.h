#pragma once

#include <QDate>
#include <QString>
#include <QStringView>

#include <optional>

// Dates as the program shows and reads them ("dd-mm-yyyy"), whatever the system locale,
// and as the firm database stores them (ISO "YYYY-MM-DD").
namespace DateText {

// "dd-mm-yyyy"; empty text for an invalid date.
QString format(const QDate &date);

// A real calendar date typed as "dd-mm-yyyy", also "d-m-yyyy" and with "/" or "." as the
// separator (one kind of separator per date). The year has four digits.
std::optional<QDate> parse(QStringView text);

// Storage form "YYYY-MM-DD"; empty text for an invalid date.
QString toIso(const QDate &date);
std::optional<QDate> fromIso(QStringView text);

} // namespace DateText
