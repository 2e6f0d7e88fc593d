#include "RecordingDialogs.h"

RecordingDialogs::RecordingDialogs() : m_previous(setDialogs(this)) {}

RecordingDialogs::~RecordingDialogs()
{
    setDialogs(m_previous);
}

void RecordingDialogs::message(const QString &text, const QString &title, Icon icon)
{
    calls.append({QStringLiteral("message"), text, title, icon});
}

bool RecordingDialogs::question(const QString &text, const QString &title)
{
    calls.append({QStringLiteral("question"), text, title, Icon::Question});
    return answers.isEmpty() ? defaultAnswer : answers.takeFirst();
}

std::optional<QString> RecordingDialogs::input(const QString &prompt, const QString &title, const QString &)
{
    calls.append({QStringLiteral("input"), prompt, title, Icon::None});
    return inputs.isEmpty() ? std::nullopt : inputs.takeFirst();
}

QString RecordingDialogs::openFileName(const QString &title, const QString &dir, const QString &)
{
    calls.append({QStringLiteral("open"), dir, title, Icon::None});
    return files.isEmpty() ? QString() : files.takeFirst();
}

QString RecordingDialogs::saveFileName(const QString &title, const QString &path, const QString &)
{
    calls.append({QStringLiteral("save"), path, title, Icon::None});
    return files.isEmpty() ? QString() : files.takeFirst();
}

void RecordingDialogs::beep()
{
    ++beeps;
}

Dialogs::UrlResult RecordingDialogs::openUrl(const QUrl &url)
{
    calls.append({QStringLiteral("url"), url.toString(), QString(), Icon::None});
    urls.append(url);
    return urlResult;
}

QList<RecordingDialogs::Call> RecordingDialogs::callsOf(const QString &kind) const
{
    QList<Call> out;
    for (const Call &c : calls)
        if (c.kind == kind)
            out.append(c);
    return out;
}

bool RecordingDialogs::saw(const QString &part) const
{
    for (const Call &c : calls)
        if ((c.kind == QLatin1String("message") || c.kind == QLatin1String("question")) && c.text.contains(part))
            return true;
    return false;
}

void RecordingDialogs::clear()
{
    calls.clear();
    beeps = 0;
}

std::optional<Dialogs::PrintChoice> RecordingDialogs::printCopies(int copies, bool preview)
{
    calls.append({QStringLiteral("copies"), QString::number(copies), QStringLiteral("Wydruk"), Icon::None});
    if (!printChoices.isEmpty())
        return printChoices.takeFirst();
    return PrintChoice{copies, preview};
}
