#pragma once

#include "exchange/clsSerwer.h"

#include <QDBusContext>
#include <QObject>
#include <QStringList>

// clsSerwer on the session bus: object "/clsSerwer", interface
// "pl.kontorian.Zlecanki.clsSerwer" (data/pl.kontorian.Zlecanki.clsSerwer.xml, whose
// generated adaptor calls these slots). A refused call answers with the D-Bus error
// "pl.kontorian.Zlecanki.Blad" and the Polish reason: nothing was stored. A transfer
// stored but not printed answers with "pl.kontorian.Zlecanki.NieWydrukowano", whose
// message gives the document's Id.
class clsSerwerBus : public QObject, protected QDBusContext {
    Q_OBJECT
public:
    static inline const QString Service = QStringLiteral("pl.kontorian.Zlecanki");
    static inline const QString Path = QStringLiteral("/clsSerwer");
    static inline const QString Interface = QStringLiteral("pl.kontorian.Zlecanki.clsSerwer");
    static inline const QString ErrorName = QStringLiteral("pl.kontorian.Zlecanki.Blad");
    static inline const QString NotPrintedName = QStringLiteral("pl.kontorian.Zlecanki.NieWydrukowano");

    explicit clsSerwerBus(QObject *parent = nullptr);
    ~clsSerwerBus() override;

    // Puts the object on the session bus (the bus name is the instance guard's). False
    // when the path is taken or there is no bus.
    bool registerOnBus();
    clsSerwer &server() { return m_server; }

public Q_SLOTS:
    bool OtworzBaze(const QString &path);
    void ZamknijBaze();
    void UruchomZBaza(const QString &path);
    int WystawPrzelew(const QStringList &values, const QString &reference);

Q_SIGNALS:
    // Every call, answered or refused: an automation copy measures its idle time by it.
    void called();

private:
    void refuse(const QString &message, const QString &name = ErrorName);
    clsSerwer m_server;
};
