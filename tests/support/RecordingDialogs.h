#pragma once

#include "Dialogs.h"

#include <QList>
#include <QStringList>
#include <QUrl>

// Dialogs for tests: installs itself while it lives, records every box, question and
// beep, and answers from scripted queues (then from the defaults), never blocking.
class RecordingDialogs : public Dialogs {
public:
    struct Call {
        QString kind; // "message", "question", "input", "open", "save", "url"
        QString text;
        QString title;
        Icon icon = Icon::None;
    };

    RecordingDialogs();
    ~RecordingDialogs() override;

    void message(const QString &text, const QString &title, Icon icon) override;
    bool question(const QString &text, const QString &title) override;
    std::optional<QString> input(const QString &prompt, const QString &title, const QString &value) override;
    QString openFileName(const QString &title, const QString &dir, const QString &filter) override;
    QString saveFileName(const QString &title, const QString &path, const QString &filter) override;
    void beep() override;
    UrlResult openUrl(const QUrl &url) override;
    // Records a "copies" call; answers from `printChoices`, then keeps the offered values.
    std::optional<PrintChoice> printCopies(int copies, bool preview) override;

    // Calls of one kind, and whether any message or question text contains `part`.
    QList<Call> callsOf(const QString &kind) const;
    bool saw(const QString &part) const;
    void clear();

    QList<Call> calls;
    int beeps = 0;
    QList<bool> answers; // questions, in order; then defaultAnswer
    bool defaultAnswer = true;
    QList<std::optional<QString>> inputs;
    QStringList files; // open and save choices, in order; then ""
    QList<QUrl> urls;
    UrlResult urlResult = UrlResult::Opened;
    QList<std::optional<PrintChoice>> printChoices;

private:
    Dialogs *m_previous = nullptr;
};
