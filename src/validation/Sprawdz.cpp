#include "Sprawdz.h"

#include "DateText.h"
#include "Dialogs.h"
#include "Messages.h"
#include "Money.h"

#include <QRegularExpression>

namespace Sprawdz {

namespace {

bool digitsOnly(QStringView s)
{
    for (QChar c : s)
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    return !s.isEmpty();
}

bool digitsOrDash(QStringView s)
{
    for (QChar c : s)
        if ((c < QLatin1Char('0') || c > QLatin1Char('9')) && c != QLatin1Char('-'))
            return false;
    return true;
}

// Characters `from`..`to` (counted from 1) are all digits.
bool digitsAt(const QString &s, int from, int to)
{
    return digitsOnly(QStringView(s).mid(from - 1, to - from + 1));
}

Outcome failed(const QString &text, int messageId, const QString &reason = QString())
{
    return Outcome{false, QLatin1Char('\'') + text + Msg(messageId), reason};
}

// Turns a number format's code into an outcome: "" and "P" pass, "N" is a wrong arrangement.
Outcome fromCode(const QString &text, const QString &code, int messageId)
{
    if (code.isEmpty() || code == QLatin1String("P"))
        return {};
    return failed(text, messageId, code == QLatin1String("N") ? Msg(113) : code);
}

} // namespace

bool isKnownKind(const QString &kind)
{
    static const QStringList kinds = {QStringLiteral("data"), QStringLiteral("cur"),      QStringLiteral("num"),
                                      QStringLiteral("int"),  QStringLiteral("kodpoczt"), QStringLiteral("nip"),
                                      QStringLiteral("pesel")};
    return kinds.contains(kind);
}

QString kodPocztowyCode(const QString &text)
{
    const QString s = text.trimmed();
    if (s.isEmpty())
        return QStringLiteral("P");
    if (!digitsOrDash(s))
        return Msg(115);
    if (s.size() != 6)
        return Msg(112);
    if (s.count(QLatin1Char('-')) != 1 || !digitsAt(s, 1, 2) || !digitsAt(s, 4, 6))
        return QStringLiteral("N");
    return {};
}

QString nipCode(const QString &text)
{
    const QString s = text.trimmed();
    if (s.isEmpty())
        return QStringLiteral("P");
    if (!digitsOrDash(s))
        return Msg(115);
    if (s.size() != 13)
        return Msg(112);
    if (s.count(QLatin1Char('-')) != 3 || !digitsAt(s, 1, 3))
        return QStringLiteral("N");
    // NNN-NNN-NN-NN, or NNN-NN-NN-NNN when the second group is not three digits.
    const bool ok = digitsAt(s, 5, 7) ? digitsAt(s, 9, 10) && digitsAt(s, 12, 13)
                                      : digitsAt(s, 5, 6) && digitsAt(s, 8, 9) && digitsAt(s, 11, 13);
    return ok ? QString() : QStringLiteral("N");
}

QString peselCode(const QString &text)
{
    const QString s = text.trimmed();
    if (s.isEmpty())
        return QStringLiteral("P");
    if (!digitsOnly(s))
        return Msg(115);
    if (s.size() != 11)
        return Msg(112);
    return {};
}

bool isNumeric(const QString &text)
{
    static const QRegularExpression number(QStringLiteral("^[+-]?(\\d{1,3}(?:[ \\x{a0}]\\d{3})+|\\d*)(?:[.,](\\d*))?$"));
    const QString s = text.trimmed();
    const auto m = number.match(s);
    return m.hasMatch() && (!m.captured(1).isEmpty() || !m.captured(2).isEmpty());
}

bool isWhole(const QString &text)
{
    if (!isNumeric(text))
        return false;
    const QString s = text.trimmed();
    const qsizetype sep = std::max(s.indexOf(QLatin1Char(',')), s.indexOf(QLatin1Char('.')));
    if (sep < 0)
        return true;
    for (QChar c : QStringView(s).mid(sep + 1))
        if (c != QLatin1Char('0'))
            return false;
    return true;
}

Outcome check(const QString &kind, const QString &text)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return {};
    if (kind == QLatin1String("data"))
        return DateText::parse(t) ? Outcome{} : failed(t, 102);
    if (kind == QLatin1String("cur"))
        return Money::parse(t) ? Outcome{} : failed(t, 101);
    if (kind == QLatin1String("num"))
        return isNumeric(t) ? Outcome{} : failed(t, 103);
    if (kind == QLatin1String("int")) {
        if (!isNumeric(t))
            return failed(t, 103);
        return isWhole(t) ? Outcome{} : failed(t, 106);
    }
    if (kind == QLatin1String("kodpoczt"))
        return fromCode(t, kodPocztowyCode(t), 107);
    if (kind == QLatin1String("nip"))
        return fromCode(t, nipCode(t), 108);
    if (kind == QLatin1String("pesel"))
        return fromCode(t, peselCode(t), 109);
    return Outcome{false, Msg(51), QString()};
}

int FiltrKlawisza(int keyCode, int mode)
{
    if (keyCode == 0 || keyCode == 8)
        return keyCode;
    const bool digit = keyCode >= '0' && keyCode <= '9';
    switch (mode) {
    case 0:
    case 1:
        return digit || keyCode == ',' || keyCode == '.' || keyCode == '-' ? keyCode : 0;
    case 2:
        return digit || keyCode == '-' || keyCode == '/' ? keyCode : 0;
    case 3:
        return digit || keyCode == '-' ? keyCode : 0;
    case 4:
        return digit ? keyCode : 0;
    case 5:
        if (keyCode == '\'' || keyCode == '"') {
            dialogs().beep();
            return 0;
        }
        return keyCode;
    default:
        return 0;
    }
}

} // namespace Sprawdz
