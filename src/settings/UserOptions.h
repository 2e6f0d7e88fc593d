#pragma once

#include <QDate>
#include <QSqlDatabase>
#include <QString>

#include <array>

// Every option the settings window edits, gathered from its three places: the per-user
// settings store ("Zlecanki"/"Load"), the first row of the firm's table Ustawienia and the
// first row of Ustawienia2; the working date comes from the global state.
struct UserOptions {
    enum Flag { Data, Wstawiany, Nowe, CzteryOdcinki, CzteryNaStronie, Szary, Eliksir, FlagCount };
    enum Font { Screen, Printer, Lista, FontCount };

    int drukujNa = 0;  // 0 printer, 1 screen preview
    int drukarka = -1; // position in the system's printer list, -1 the default printer
    std::array<QString, FontCount> fonts;
    QDate today;
    int margLewy = 0;
    int margPrawy = 0; // the top margin, whatever the column's name says
    std::array<bool, FlagCount> flags{};
    int drukZlGr = 0; // 0 "123,45", 1 "123,45 zł", 2 "123 zł 45 gr"
};

namespace UserOptionsStore {

// The settings store keys of the fonts, in the order of UserOptions::Font.
QString fontKey(UserOptions::Font font);

// Reads the options; a missing row or key gives its default.
UserOptions read(const QSqlDatabase &db);

// Writes the options to their places and into the global state, step by step in a fixed
// order: "DrukujNa"; the fonts; the working date; the margins (globals); "Drukarka"; the
// first rows of Ustawienia and Ustawienia2 together in one transaction; the flags
// (globals); "DrukZlGr" and "Eliksir". When the database refuses, the steps before it stay
// done, the rest is skipped and false comes back with a Polish reason in `error`.
bool save(QSqlDatabase db, const UserOptions &options, QString *error);

} // namespace UserOptionsStore
