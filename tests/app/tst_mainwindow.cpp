#include "AppState.h"
#include "Firm.h"
#include "RecordingDialogs.h"
#include "SettingsStore.h"
#include "TestEnv.h"
#include "db/FirmDatabase.h"
#include "frmFirmaOpen.h"
#include "frmglowna.h"
#include "frmhotline.h"
#include "frmo.h"

#include <QAction>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSqlQuery>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>

#include <memory>

class TestMainWindow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void menuNamesAndCaptions_data();
    void menuNamesAndCaptions();
    void toolbarRepeatsCommands();
    void commandsOfLaterWindowsAreDisabled();
    void firstStartOpensDefaultFirm();
    void noFirmState();
    void badFirmFileKeepsNoFirmState();
    void newFirmFromMenu();
    void openFirmFromList();
    void toolbarAndStatusRemembered();
    void oneWindowMode();
    void closeAllSparesFrameWindows();
    void minimiseAll();
    void quitAsksFirst();
    void helpOpensTopicInBrowser_data();
    void helpOpensTopicInBrowser();

private:
    QAction *command(const QString &name) { return m_window->command(name); }
    QString status() { return m_window->findChild<QLabel *>(QStringLiteral("statusFirma"))->text(); }
    std::unique_ptr<TestEnv> m_env;
    std::unique_ptr<RecordingDialogs> m_dialogs;
    std::unique_ptr<frmglowna> m_window;
};

void TestMainWindow::initTestCase()
{
    m_env = std::make_unique<TestEnv>();
}

void TestMainWindow::init()
{
    m_env->clearSettings();
    m_dialogs = std::make_unique<RecordingDialogs>();
    m_window = std::make_unique<frmglowna>();
    m_window->show();
    m_window->openStartFirm();
}

void TestMainWindow::cleanup()
{
    m_dialogs->defaultAnswer = true;
    m_window->QueryQuit();
    m_window.reset();
    m_dialogs.reset();
    CloseDb();
}

void TestMainWindow::menuNamesAndCaptions_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QStringList>("items"); // "name=caption", "name" alone for a separator
    QTest::newRow("System") << "mnusystembar"
                            << QStringList{"mnufirmabiz=Nowa firma", "mnuopen=Otwórz firmę...",
                                           "mnufirmadane=Dane firmy", "mnuImportWin=Import danych",
                                           "mnuclosedb=Zamknij firmę", "mnusep7", "mnuochrona=Ochrona",
                                           "mnuuser=Zmień użytkownika", "mnusep4", "mnukoniec=Koniec"};
    QTest::newRow("Dokumenty") << "mnudokumentybar"
                               << QStringList{"mnuzlecanki_0=Zlecanki Bankowe", "mnuzlecanki_1=Bankowy dowód wpłaty",
                                              "mnuzlecanki_2=Przekaz pocztowy na konto", "mnuzlecanki_3=Przekaz imienny",
                                              "mnuzlecanki_4=Przelew na konto ZUS", "mnuzlecanki_5=Przelew za podatki",
                                              "mnusep5", "mnuzbior=Zbiorówka do przelewów", "mnusep6",
                                              "mnuzaplatyterm=Zapłaty terminowe", "mnusepar", "mnuimport=Import z pliku",
                                              "mnusep13", "mnuprzeglad=Przeglądanie/Korekta"};
    QTest::newRow("Raporty") << "mnuraportybar"
                             << QStringList{"mnuraporty_0=Lista Przelewów bankowych",
                                            "mnuraporty_1=Lista Bankowych dowodów wpłat",
                                            "mnuraporty_2=Lista Przekazów na konto",
                                            "mnuraporty_3=Lista Przekazów imiennych"};
    QTest::newRow("Słowniki") << "mnuslownikibar"
                              << QStringList{"mnukontrahenci=Kontrahenci", "mnuzaplat=Zapłaty terminowe"};
    QTest::newRow("Okna") << "mnuoknabar"
                          << QStringList{"mnutoolbar=Toolbar", "mnustatus=Status", "mnujednookno=Tylko jedno na raz",
                                         "mnusep3", "mnuokno_0=Kaskada", "mnuokno_1=Uporządkuj ikony", "mnusep2",
                                         "mnucloseall=Zamknij wszystkie", "mnuminall=Zminimalizuj wszystkie"};
    QTest::newRow("Pomoc") << "mnupomocbar"
                           << QStringList{"mnuspis=Spis treści", "mnuinternet=Internet", "mnuhotline=Gorąca linia",
                                          "mnusep11", "mnuo=Info"};
}

void TestMainWindow::menuNamesAndCaptions()
{
    QFETCH(QString, menu);
    QFETCH(QStringList, items);
    auto *m = m_window->findChild<QMenu *>(menu);
    QVERIFY(m);
    QStringList found;
    for (QAction *a : m->actions()) {
        if (a->objectName().isEmpty() || (!a->isSeparator() && a->text().startsWith(QLatin1Char('&'))))
            continue; // the list of open windows
        if (a->objectName().isEmpty() && a->isSeparator())
            continue;
        found << (a->isSeparator() ? a->objectName() : a->objectName() + QLatin1Char('=') + a->text());
    }
    QCOMPARE(found, items);

    // The menu bar's order and captions, with "Ustawienia" a command of its own.
    QStringList bar;
    for (QAction *a : m_window->menuBar()->actions())
        bar << a->objectName() + QLatin1Char('=') + a->text();
    QCOMPARE(bar, (QStringList{"mnusystembar=System", "mnudokumentybar=Dokumenty", "mnuraportybar=Raporty",
                               "mnuslownikibar=Słowniki", "mnuustawbar=Ustawienia", "mnuoknabar=Okna",
                               "mnupomocbar=Pomoc"}));
}

void TestMainWindow::toolbarRepeatsCommands()
{
    auto *bar = m_window->findChild<QToolBar *>(QStringLiteral("toolbar"));
    QVERIFY(bar);
    auto *first = bar->findChild<QWidget *>(QStringLiteral("Command1_0"));
    QVERIFY(first);
    QCOMPARE(bar->actions().first(), command(QStringLiteral("mnuopen")));
    QVERIFY(bar->actions().contains(command(QStringLiteral("mnuzlecanki_0"))));
}

void TestMainWindow::commandsOfLaterWindowsAreDisabled()
{
    for (const char *name : {"mnuImportWin", "mnuochrona", "mnuuser", "mnuzlecanki_0", "mnuzbior",
                             "mnuprzeglad", "mnuraporty_3", "mnuzaplat", "mnuustawbar"})
        QVERIFY2(!command(QLatin1String(name))->isEnabled(), name);
    for (const char *name : {"mnufirmabiz", "mnuopen", "mnuclosedb", "mnukoniec", "mnutoolbar", "mnucloseall", "mnuspis",
                             "mnuo", "mnuhotline"})
        QVERIFY2(command(QLatin1String(name))->isEnabled(), name);
}

void TestMainWindow::firstStartOpensDefaultFirm()
{
    QVERIFY(isFirmOpen());
    QCOMPARE(firmFile(), standardFirmPath());
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Zlecanki - [Firma standardowa]"));
    QCOMPARE(status(), QStringLiteral("Firma standardowa"));
    QVERIFY(command(QStringLiteral("mnudokumentybar"))->isVisible());
    QVERIFY(command(QStringLiteral("mnuclosedb"))->isVisible());
    QVERIFY(m_dialogs->calls.isEmpty());
}

void TestMainWindow::noFirmState()
{
    command(QStringLiteral("mnuclosedb"))->trigger();
    QVERIFY(!isFirmOpen());
    QCOMPARE(status(), QStringLiteral("Nie została otworzona żadna firma"));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Zlecanki"));
    for (const char *name : {"mnudokumentybar", "mnuraportybar", "mnuslownikibar", "mnuustawbar", "mnufirmadane",
                             "mnuImportWin", "mnuclosedb"})
        QVERIFY2(!command(QLatin1String(name))->isVisible(), name);
    for (const char *name : {"mnufirmabiz", "mnuopen", "mnukoniec", "mnuoknabar", "mnupomocbar"})
        QVERIFY2(command(QLatin1String(name))->isVisible(), name);
    // Opening it again brings the menus back.
    QVERIFY(m_window->openFirm(standardFirmPath()));
    QVERIFY(command(QStringLiteral("mnudokumentybar"))->isVisible());
}

void TestMainWindow::badFirmFileKeepsNoFirmState()
{
    const QString path = m_env->newPath(QStringLiteral("notatki.zlc"));
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(QByteArray("zakupy: chleb, mleko\n").repeated(300));
    f.close();
    QVERIFY(!m_window->openFirm(path));
    QVERIFY(!isFirmOpen());
    QCOMPARE(status(), QStringLiteral("Nie została otworzona żadna firma"));
    QVERIFY(m_dialogs->saw(QStringLiteral("nie jest bazą danych firmy")));
    QVERIFY(m_window->isVisible());
}

void TestMainWindow::newFirmFromMenu()
{
    const QString path = appState().bazyPath + QStringLiteral("kowalski");
    QFile::remove(path + QStringLiteral(".zlc"));
    m_dialogs->files << path;
    command(QStringLiteral("mnufirmabiz"))->trigger();
    QVERIFY(QFileInfo::exists(path + QStringLiteral(".zlc")));
    QCOMPARE(firmFile(), path + QStringLiteral(".zlc"));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Zlecanki - [kowalski]"));
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("OstatniaFirma")), path + QStringLiteral(".zlc"));

    // An existing firm is never overwritten.
    m_dialogs->files << path + QStringLiteral(".zlc");
    command(QStringLiteral("mnufirmabiz"))->trigger();
    QVERIFY(m_dialogs->saw(QStringLiteral("już istnieje")));
}

void TestMainWindow::openFirmFromList()
{
    const QString other = appState().bazyPath + QStringLiteral("nowak.zlc");
    QFile::remove(other);
    QVERIFY(FirmDatabase::create(other, nullptr));
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("prep"));
        db.setDatabaseName(other);
        QVERIFY(db.open());
        QSqlQuery q(db);
        QVERIFY(q.exec(QStringLiteral("INSERT INTO firma (NAZWA, MIASTO) VALUES ('Nowak i Syn', 'Łódź')")));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("prep"));

    command(QStringLiteral("mnuopen"))->trigger();
    auto *w = qobject_cast<frmFirmaOpen *>(m_window->childWindow(QStringLiteral("frmFirmaOpen")));
    QVERIFY(w);
    auto *list = w->findChild<QListWidget *>(QStringLiteral("lstfirmy"));
    QCOMPARE(list->item(0)->text(), QStringLiteral("Firma standardowa"));
    int row = -1;
    for (int i = 0; i < list->count(); ++i)
        if (list->item(i)->text().startsWith(QStringLiteral("Nowak i Syn")))
            row = i;
    QVERIFY(row > 0);
    list->setCurrentRow(row);
    QTest::mouseClick(w->findChild<QPushButton *>(QStringLiteral("cmdok")), Qt::LeftButton);
    QCOMPARE(firmFile(), other);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Zlecanki - [Nowak i Syn, Łódź]"));
}

void TestMainWindow::toolbarAndStatusRemembered()
{
    auto *bar = m_window->findChild<QToolBar *>(QStringLiteral("toolbar"));
    QVERIFY(bar->isVisible());
    command(QStringLiteral("mnutoolbar"))->trigger();
    command(QStringLiteral("mnustatus"))->trigger();
    QVERIFY(!bar->isVisible());
    QVERIFY(!m_window->statusBar()->isVisible());
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("Toolbar")), QStringLiteral("False"));
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("Status")), QStringLiteral("False"));

    // The next start, and the no-firm state, keep them off.
    m_window->QueryQuit();
    m_window = std::make_unique<frmglowna>();
    m_window->show();
    m_window->openStartFirm();
    QVERIFY(!m_window->findChild<QToolBar *>(QStringLiteral("toolbar"))->isVisible());
    QVERIFY(!command(QStringLiteral("mnutoolbar"))->isChecked());
    m_window->CloseDB();
    QVERIFY(!m_window->findChild<QToolBar *>(QStringLiteral("toolbar"))->isVisible());
    QVERIFY(!m_window->statusBar()->isVisible());
}

void TestMainWindow::oneWindowMode()
{
    command(QStringLiteral("mnujednookno"))->trigger();
    QCOMPARE(m_window->mdiArea()->viewMode(), QMdiArea::TabbedView);
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("JednoOkno")), QStringLiteral("True"));
    command(QStringLiteral("mnujednookno"))->trigger();
    QCOMPARE(m_window->mdiArea()->viewMode(), QMdiArea::SubWindowView);
}

void TestMainWindow::closeAllSparesFrameWindows()
{
    command(QStringLiteral("mnuo"))->trigger();
    command(QStringLiteral("mnuhotline"))->trigger();
    command(QStringLiteral("mnuopen"))->trigger();
    command(QStringLiteral("mnuo"))->trigger(); // brought forward, not opened twice
    QCOMPARE(m_window->mdiArea()->subWindowList().size(), 3);
    command(QStringLiteral("mnucloseall"))->trigger();
    QStringList left;
    for (QMdiSubWindow *sub : m_window->mdiArea()->subWindowList())
        left << sub->widget()->objectName();
    QCOMPARE(left, QStringList{QStringLiteral("frmFirmaOpen")});
    QVERIFY(m_window->findChild<QWidget *>(QStringLiteral("frmglowna_img")));
}

void TestMainWindow::minimiseAll()
{
    command(QStringLiteral("mnuo"))->trigger();
    command(QStringLiteral("mnuhotline"))->trigger();
    command(QStringLiteral("mnuminall"))->trigger();
    for (QMdiSubWindow *sub : m_window->mdiArea()->subWindowList())
        QVERIFY(sub->isMinimized());
    command(QStringLiteral("mnuokno_1"))->trigger();
    const auto subs = m_window->mdiArea()->subWindowList();
    QCOMPARE(subs[0]->geometry().bottom(), subs[1]->geometry().bottom());
    QVERIFY(subs[0]->geometry().right() < subs[1]->geometry().left() ||
            subs[1]->geometry().right() < subs[0]->geometry().left());
}

void TestMainWindow::quitAsksFirst()
{
    m_window->setGeometry(40, 50, 900, 640);
    m_dialogs->answers << false;
    QVERIFY(!m_window->close());
    QVERIFY(m_window->isVisible());
    QVERIFY(isFirmOpen());
    QCOMPARE(m_dialogs->calls.last().text, QStringLiteral("Zakończyć pracę?"));
    QCOMPARE(m_dialogs->calls.last().title, QStringLiteral("Koniec - Zlecanki"));
    QVERIFY(SettingsStore::loadGet(QStringLiteral("WinState")).isEmpty());

    m_dialogs->answers << true;
    QVERIFY(m_window->close());
    QVERIFY(!isFirmOpen());
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("WinState")), QStringLiteral("0"));
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("Width")), QStringLiteral("13500"));
    QCOMPARE(SettingsStore::loadGet(QStringLiteral("Left")), QStringLiteral("600"));

    // The next start puts the window back there.
    m_window = std::make_unique<frmglowna>();
    m_window->restorePlacement();
    QCOMPARE(m_window->geometry(), QRect(40, 50, 900, 640));
}

void TestMainWindow::helpOpensTopicInBrowser_data()
{
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("message");
    QTest::newRow("opened") << int(Dialogs::UrlResult::Opened) << "";
    QTest::newRow("no browser") << int(Dialogs::UrlResult::NoBrowser) << "Could not find your Browser";
    QTest::newRow("failed") << int(Dialogs::UrlResult::Failed) << "Web Page Not Opened";
}

void TestMainWindow::helpOpensTopicInBrowser()
{
    QFETCH(int, result);
    QFETCH(QString, message);
    m_dialogs->urlResult = Dialogs::UrlResult(result);
    command(QStringLiteral("mnuspis"))->trigger();
    QCOMPARE(m_dialogs->urls.size(), 1);
    const QUrl url = m_dialogs->urls.first();
    QCOMPARE(url.fragment(), QStringLiteral("Spis"));
    QVERIFY(url.isLocalFile());
    QFile page(url.toLocalFile());
    QVERIFY2(page.open(QIODevice::ReadOnly), qPrintable(url.toLocalFile()));
    const QString html = QString::fromUtf8(page.readAll());
    for (const char *topic : {"Spis", "wystawianiedokumentow", "slownikkontrahentow", "danefirmy",
                              "Przegladanieikorektadokumentow", "zaplatyterminowe", "zbiorowka"})
        QVERIFY2(html.contains(QStringLiteral("id=\"%1\"").arg(QLatin1String(topic))), topic);
    QCOMPARE(m_dialogs->saw(QStringLiteral("Could not")) || m_dialogs->saw(QStringLiteral("Web Page")),
             !message.isEmpty());
    if (!message.isEmpty())
        QVERIFY(m_dialogs->saw(message));
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
