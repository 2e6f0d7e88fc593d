#pragma once

#include "documents/DocumentStore.h"
#include "documents/FirmData.h"

#include <QDate>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <optional>

// A firm with a full address, NIP, short name and ZUS identifier.
FirmData sampleFirm();

// The PostgreSQL server of the test run (scripts/pg-cluster prints it, scripts/test puts it in
// ZLECANKI_PG): "postgresql://..." without a schema, empty when there is none.
QString testServer();
// True when this run keeps its firms on the server (CTest's "_pg" runs set ZLECANKI_TEST_SERVER).
bool firmsOnServer();
// Where the test firm called `path` lives: the path itself, or (on the server) the address of
// a schema of its own, emptied when first asked for.
QString firmLocation(const QString &path);
// The address of a firm schema `schema` on the test server, dropped first so that it is
// empty; empty when there is no server.
QString emptiedServerSchema(const QString &schema);
// For initTestCase: skips a server run when no server was started.
#define SKIP_WITHOUT_SERVER()                                                                                  \
    do {                                                                                                       \
        if (firmsOnServer() && testServer().isEmpty())                                                         \
            QSKIP("Brak serwera PostgreSQL dla testów (ZLECANKI_PG): uruchom scripts/pg-cluster start KATALOG"); \
    } while (false)

// Creates a firm at `path` (on the server when the run says so) and opens it; with `firm`
// given, stores it with every account.
bool openNewFirm(const QString &path, const std::optional<FirmData> &firm = std::nullopt);

// Creates a firm file at `path` without opening it and runs `statements` on it, each one whole.
bool createFirm(const QString &path, const QStringList &statements = {});

// A document of `kind` as users fill it in: recipient in Kraków, amount 1234,50.
PaymentDocument sampleDocument(int kind, QDate issued = QDate(2026, 3, 5));

// Registers the slip drivers and sends every printout to the PDF file `pdf`.
void printToPdf(const QString &pdf);
// The same, and notes each document job in `jobs`: procedure word, orientation and the
// document's id ("dprzelew landscape 12"), so a test sees which layout a command chose.
void printToPdf(const QString &pdf, QStringList *jobs);

// The first value of a query on the open firm ("SELECT A || '|' || B ..."), "<brak>" when none.
QString stored(const QString &sql);

// Every row of a query on `db`: values joined by '|' (Null as NULL), rows by ';'; the error when it fails.
QString queryRows(const QSqlDatabase &db, const QString &sql);
