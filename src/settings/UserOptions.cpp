#include "UserOptions.h"

#include "AppState.h"
#include "SettingsStore.h"
#include "db/Structure.h"
#include "db/Transaction.h"

#include <QSqlError>
#include <QSqlQuery>

namespace UserOptionsStore {

namespace {

const QString FlagColumns[UserOptions::FlagCount] = {
    QStringLiteral("Data"),          QStringLiteral("Wstawiany"),       QStringLiteral("Nowe"),
    QStringLiteral("CzteryOdcinki"), QStringLiteral("CzteryNaStronie"), QStringLiteral("Szary"),
    QStringLiteral("Eliksir")};

int storedInt(const QString &key, int def)
{
    return SettingsStore::getInt(SettingsStore::App, SettingsStore::Load, key).value_or(def);
}

// Runs one statement with bound values; on failure the database's reason goes to `error`.
bool exec(QSqlQuery &q, const QString &sql, const QVariantList &values, QString *error)
{
    if (!q.prepare(sql)) {
        *error = Structure::explainError(q.lastError());
        return false;
    }
    for (const QVariant &v : values)
        q.addBindValue(v);
    if (q.exec())
        return true;
    *error = Structure::explainError(q.lastError());
    return false;
}

// Changes the table's first row (lowest rowid), the one every reader takes; a table left
// without rows gets one, so the options are not lost.
bool writeFirstRow(QSqlDatabase &db, const QString &table, const QStringList &columns, const QVariantList &values,
                   QString *error)
{
    QSqlQuery q(db);
    const QString sets = columns.join(QStringLiteral(" = ?, ")) + QStringLiteral(" = ?");
    if (!exec(q,
              QStringLiteral("UPDATE ") + table + QStringLiteral(" SET ") + sets +
                  QStringLiteral(" WHERE rowid = (SELECT min(rowid) FROM ") + table + QLatin1Char(')'),
              values, error))
        return false;
    if (q.numRowsAffected() > 0)
        return true;
    QStringList marks;
    for (qsizetype i = 0; i < columns.size(); ++i)
        marks << QStringLiteral("?");
    return exec(q,
                QStringLiteral("INSERT INTO ") + table + QStringLiteral(" (") + columns.join(QLatin1Char(',')) +
                    QStringLiteral(") VALUES (") + marks.join(QLatin1Char(',')) + QLatin1Char(')'),
                values, error);
}

bool writeTables(QSqlDatabase &db, const UserOptions &o, QString *error)
{
    Transaction t(db);
    if (!t.isActive()) {
        *error = t.error();
        return false;
    }
    QStringList columns;
    QVariantList values;
    for (int i = 0; i < UserOptions::FlagCount; ++i) {
        columns << FlagColumns[i];
        values << (o.flags[i] ? 1 : 0);
    }
    if (!writeFirstRow(db, QStringLiteral("Ustawienia"), columns, values, error))
        return false;
    if (!writeFirstRow(db, QStringLiteral("Ustawienia2"), {QStringLiteral("MargLewy"), QStringLiteral("MargPrawy")},
                       {o.margLewy, o.margPrawy}, error))
        return false;
    if (!t.commit()) {
        *error = t.error();
        return false;
    }
    return true;
}

} // namespace

QString fontKey(UserOptions::Font font)
{
    switch (font) {
    case UserOptions::Screen:
        return QStringLiteral("NazwaFontuScreen");
    case UserOptions::Printer:
        return QStringLiteral("NazwaFontuPrinter");
    case UserOptions::Lista:
    case UserOptions::FontCount:
        break;
    }
    return QStringLiteral("NazwaFontuLista");
}

UserOptions read(const QSqlDatabase &db)
{
    UserOptions o;
    o.drukujNa = qBound(0, storedInt(QStringLiteral("DrukujNa"), 0), 1);
    o.drukarka = storedInt(QStringLiteral("Drukarka"), -1);
    const QString arialCe = QStringLiteral("Arial CE");
    o.fonts = {SettingsStore::loadGet(fontKey(UserOptions::Screen), arialCe),
               SettingsStore::loadGet(fontKey(UserOptions::Printer), arialCe),
               SettingsStore::loadGet(fontKey(UserOptions::Lista), QStringLiteral("Courier New CE"))};
    o.today = appState().today;
    o.drukZlGr = qBound(0, storedInt(QStringLiteral("DrukZlGr"), 0), 2);

    QSqlQuery q(db);
    if (q.exec(QStringLiteral("SELECT ") + QStringList(std::begin(FlagColumns), std::end(FlagColumns)).join(QLatin1Char(',')) +
               QStringLiteral(" FROM Ustawienia ORDER BY rowid LIMIT 1")) &&
        q.next()) {
        for (int i = 0; i < UserOptions::FlagCount; ++i)
            o.flags[i] = q.value(i).toInt() != 0;
    }
    if (q.exec(QStringLiteral("SELECT MargLewy, MargPrawy FROM Ustawienia2 ORDER BY rowid LIMIT 1")) && q.next()) {
        o.margLewy = static_cast<qint16>(q.value(0).toInt());
        o.margPrawy = static_cast<qint16>(q.value(1).toInt());
    }
    return o;
}

bool save(QSqlDatabase db, const UserOptions &o, QString *error)
{
    AppState &s = appState();
    SettingsStore::saveInt(SettingsStore::App, SettingsStore::Load, QStringLiteral("DrukujNa"), o.drukujNa);

    for (int i = 0; i < UserOptions::FontCount; ++i)
        SettingsStore::loadSave(fontKey(static_cast<UserOptions::Font>(i)), o.fonts[i]);
    s.fontScreen = o.fonts[UserOptions::Screen];
    s.fontPrinter = o.fonts[UserOptions::Printer];
    s.fontLista = o.fonts[UserOptions::Lista];

    // For this run only: the next opening of a firm takes the real date again.
    s.today = o.today;

    s.margLewy = static_cast<qint16>(o.margLewy);
    s.margPrawy = static_cast<qint16>(o.margPrawy);

    SettingsStore::saveInt(SettingsStore::App, SettingsStore::Load, QStringLiteral("Drukarka"), o.drukarka);

    if (!writeTables(db, o, error))
        return false;

    int *flags[UserOptions::FlagCount] = {&s.data,            &s.wstawiany, &s.nowe,   &s.czteryOdcinki,
                                          &s.czteryNaStronie, &s.szary,     &s.eliksir};
    for (int i = 0; i < UserOptions::FlagCount; ++i)
        *flags[i] = o.flags[i] ? 1 : 0;

    SettingsStore::saveInt(SettingsStore::App, SettingsStore::Load, QStringLiteral("DrukZlGr"), o.drukZlGr);
    s.drukZlGr = o.drukZlGr;
    SettingsStore::saveInt(SettingsStore::App, SettingsStore::Load, QStringLiteral("Eliksir"),
                           o.flags[UserOptions::Eliksir] ? 1 : 0);
    return true;
}

} // namespace UserOptionsStore
