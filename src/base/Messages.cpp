#include "Messages.h"

#include <QHash>

QString Msg(int id)
{
    static const QHash<int, QString> table = {
        {1, QStringLiteral("&OK")},
        {2, QStringLiteral("&Anuluj")},
        {3, QStringLiteral("&Pomoc")},
        {4, QStringLiteral("&Koniec")},
        {5, QStringLiteral("&Nowa")},
        {6, QStringLiteral("&Nowy")},
        {7, QStringLiteral("&Zmień")},
        {8, QStringLiteral("&Usuń")},
        {9, QStringLiteral("&Dalej >>")},
        {10, QStringLiteral("<< &Wstecz")},
        {50, QStringLiteral("Brak danych")},
        {51, QStringLiteral("Błąd")},
        {52, QStringLiteral("Zabronione")},
        {53, QStringLiteral("Uwaga")},
        {54, QStringLiteral("Nie wskazałeś")},
        {55, QStringLiteral("Nie możesz")},
        {56, QStringLiteral("Jesteś pewien że chcesz usunąć - ")},
        {80, QStringLiteral("Nie ma zainstalowanej drukarki, lub jest uszkodzona.")},
        {101, QStringLiteral("' nie jest kwotą.")},
        {102, QStringLiteral("' nie jest datą.")},
        {103, QStringLiteral("' nie jest liczbą.")},
        {104, QStringLiteral("' nie jest dodatnia.")},
        {105, QStringLiteral("' nie jest procentem.")},
        {106, QStringLiteral("' nie jest liczbą całkowitą.")},
        {107, QStringLiteral("' nie jest kodem pocztowym.")},
        {108, QStringLiteral("' nie jest numerem NIP-u.")},
        {109, QStringLiteral("' nie jest numerem PESEL.")},
        {110, QStringLiteral("To pole nie może być puste.")},
        {111, QStringLiteral("' nie jest numerem REGON-u.")},
        {112, QStringLiteral("Nieprawidłowa ilość znaków")},
        {113, QStringLiteral("Nieprawidłowy format")},
        {114, QStringLiteral("Nieznany format")},
        {115, QStringLiteral("Niedopuszczalny znak")},
    };
    return table.value(id);
}
