#include "ChoiceLists.h"

#include "AppState.h"

namespace ChoiceLists {

namespace {

// Years from `first` to `lastFixed`, extended at the end so that a payment for next
// year can still be issued long after the list was first drawn up.
QStringList years(int first, int lastFixed, const QDate &today)
{
    const int last = qMax(lastFixed, (today.isValid() ? today : QDate::currentDate()).year() + 1);
    QStringList list;
    for (int y = first; y <= last; ++y)
        list << QString::number(y);
    return list;
}

} // namespace

QDate workingDate()
{
    const QDate today = appState().today;
    return today.isValid() ? today : QDate::currentDate();
}

QStringList zusAccounts()
{
    return {QStringLiteral("Ubezpieczenie społeczne"), QStringLiteral("Ubezpieczenie zdrowotne"),
            QStringLiteral("FP i FGŚP"), QStringLiteral("Fund. Emerytur Pomostowych"),
            // Since 2018 every contribution goes to the payer's own account; the four
            // above stay for documents stored before.
            QStringLiteral("Rachunek indywidualny (NRS)")};
}

QStringList zusPaymentTypes()
{
    return {QStringLiteral("S - składka za 1 m-c"),   QStringLiteral("M - składka dłuższa niż m-c"),
            QStringLiteral("U - układ ratalny"),      QStringLiteral("T - odroczenie terminu"),
            QStringLiteral("D - opłata dodatkowa"),   QStringLiteral("E - koszty egzekucyjne"),
            QStringLiteral("A - dodatkowa opłata za błędy płatnika")};
}

QStringList taxPeriodTypes()
{
    return {QStringLiteral("M - miesiąc"), QStringLiteral("P - półrocze"), QStringLiteral("R - rok"),
            QStringLiteral("K - kwartał"), QStringLiteral("D - dekada")};
}

QStringList taxYears(const QDate &today)
{
    return years(1999, 2022, today);
}

QStringList zusYears(const QDate &today)
{
    return years(1995, 2024, today);
}

QStringList months()
{
    return {QStringLiteral("styczeń"),  QStringLiteral("luty"),     QStringLiteral("marzec"),
            QStringLiteral("kwiecień"), QStringLiteral("maj"),      QStringLiteral("czerwiec"),
            QStringLiteral("lipiec"),   QStringLiteral("sierpień"), QStringLiteral("wrzesień"),
            QStringLiteral("październik"), QStringLiteral("listopad"), QStringLiteral("grudzień")};
}

QStringList zusIdentifierTypes()
{
    return {QStringLiteral("R - REGON"), QStringLiteral("P - PESEL"), QStringLiteral("1 - Dowód osobisty"),
            QStringLiteral("2 - Paszport")};
}

QStringList taxIdentifierTypes()
{
    return {QStringLiteral("N - NIP"), QStringLiteral("R - REGON"), QStringLiteral("P - PESEL"),
            QStringLiteral("1 - Dowód osobisty"), QStringLiteral("2 - Paszport")};
}

QString itemAt(const QStringList &list, int position)
{
    return position >= 0 && position < list.size() ? list.at(position) : QString();
}

QString letterAt(const QStringList &list, int position)
{
    return itemAt(list, position).section(QStringLiteral(" - "), 0, 0);
}

int yearPosition(const QStringList &years, int year)
{
    return static_cast<int>(years.indexOf(QString::number(year)));
}

} // namespace ChoiceLists
