#pragma once

#include <QDate>
#include <QString>

#include <optional>

// The application's global state, one for the process: paths, the working date, fonts,
// print options, the open firm's flags and margins. Every part of the program reads it.
struct AppState {
    QString suiteRoot; // ends with "/"
    QString bazyPath;  // suiteRoot + "bazy/"

    QDate today;                      // the working date
    std::optional<QDate> todayForRun; // set by --dzis: every firm opening keeps it

    QString fontScreen = QStringLiteral("Arial CE");
    QString fontPrinter = QStringLiteral("Arial CE");
    QString fontLista = QStringLiteral("Courier New CE");
    int drukZlGr = 0; // amount format on slips: 0 "123,45", 1 "123,45 zł", 2 "123 zł 45 gr"
    int drukDaty = 0;

    // The firm's document and print flags (table Ustawienia), 0 or 1.
    int data = 0;
    int wstawiany = 0;
    int nowe = 0;
    int czteryOdcinki = 0;
    int czteryNaStronie = 0;
    int szary = 0;
    int eliksir = 0;
    // Extra print margins in whole millimetres (table Ustawienia2); margPrawy is the top one.
    int margLewy = 0;
    int margPrawy = 0;

    bool started = false;
};

AppState &appState();

// The suite's root folder: $ZLECANKI_SUITE_ROOT when set, else the per-user data folder
// ~/.local/share/Kontorian/ (XDG_DATA_HOME moves it). Always ends with "/".
QString defaultSuiteRoot();
// Fills suiteRoot and bazyPath and makes sure the databases folder exists.
void initPaths();
