#pragma once

#include <QObject>
#include <QString>

#include <memory>

class QDBusServiceWatcher;
class QLockFile;

// One running copy of the program per user session, shared by the desktop start and the
// automation start. The copy that runs owns the name "pl.kontorian.Zlecanki" on the
// session bus and serves the automation object there:
// - a desktop start takes the name over from a copy that only serves automation (that
//   copy then ends), and is refused by a running desktop copy, to which it hands the firm
//   file of its command line (handOver: the running copy opens it and comes to the front);
// - an automation start (the bus starting the program for a call) serves only while no
//   other copy does, and gives the name up to a desktop start.
// Without a session bus the desktop start falls back to a lock file in the user's
// runtime folder (a lock left by a crashed copy is taken over); automation needs the bus.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    enum class Role { Desktop, Automation };
    enum class Outcome { Owner, Running, Failed };

    explicit SingleInstance(Role role = Role::Desktop, QObject *parent = nullptr);
    ~SingleInstance() override;

    static inline const QString Service = QStringLiteral("pl.kontorian.Zlecanki");

    // Tries to become the one copy. Failed (with `error`) only for automation without a bus.
    Outcome acquire(QString *error = nullptr);
    // True when the copy holds the bus name (not the lock file).
    bool onBus() const { return m_onBus; }
    // For a desktop start refused by a running copy: asks that copy to open `firmFile`
    // (empty: none) and come to the front. False when it did not answer.
    bool handOver(const QString &firmFile, QString *error = nullptr) const;

    static QString lockPath();

Q_SIGNALS:
    // A desktop start took the bus name over: an automation copy ends.
    void replaced();

private:
    Role m_role;
    bool m_onBus = false;
    std::unique_ptr<QLockFile> m_lock;
    QDBusServiceWatcher *m_watcher = nullptr;
};
