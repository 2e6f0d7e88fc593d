#include "frmraport.h"

#include "AppState.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "Help.h"
#include "Messages.h"
#include "reports/ReportWorkbook.h"
#include "db/ServerFirms.h"
#include "base/ui/WindowUtil.h"
#include "documents/ui/WindowFields.h"
#include "print/PrintEngine.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

frmraport::frmraport(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmraport"));
    setWindowTitle(QStringLiteral("Raport"));
    using WindowFields::button;

    m_heading = new QLabel(this);
    m_heading->setObjectName(QStringLiteral("lblnaglowek"));
    m_heading->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_model = new Reports::RegisterModel(this);
    m_lista = new QTableView(this);
    m_lista->setObjectName(QStringLiteral("Lista"));
    m_lista->setModel(m_model);
    m_lista->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_lista->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Fixed row heights and column widths: a long register is not measured line by line.
    m_lista->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_lista->verticalHeader()->hide();
    m_lista->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    m_lista->horizontalHeader()->setStretchLastSection(false);
    m_lista->setColumnWidth(0, 90);
    m_lista->setColumnWidth(1, 220);
    m_lista->setColumnWidth(2, 260);
    m_lista->setColumnWidth(3, 110);
    m_zakladki = new QTabWidget(this);
    m_zakladki->setObjectName(QStringLiteral("zakladki"));
    m_zakladki->addTab(m_lista, QStringLiteral("Lista"));

    auto *print = button(this, QStringLiteral("cmddrukuj"), QStringLiteral("&Drukuj"));
    auto *excel = button(this, QStringLiteral("CmdExcel"), QStringLiteral("&Arkusz"));
    auto *help = button(this, QStringLiteral("cmdpomoc"), Msg(3));
    auto *close = button(this, QStringLiteral("cmdkoniec"), Msg(4));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(print);
    buttons->addWidget(excel);
    buttons->addStretch();
    buttons->addWidget(help);
    buttons->addWidget(close);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_heading);
    layout->addWidget(m_zakladki, 1);
    layout->addLayout(buttons);

    connect(print, &QPushButton::clicked, this, &frmraport::print);
    connect(excel, &QPushButton::clicked, this, [this] { saveWorkbook(); });
    connect(help, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("raporty")); });
    connect(close, &QPushButton::clicked, this, [this] { closeWindow(this); });
    resize(760, 480);
}

bool frmraport::make(const Reports::Criteria &criteria)
{
    m_criteria = criteria;
    setWindowTitle(QStringLiteral("Raport - ") + Reports::reportName(criteria.kindIndex));
    QString error;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto list = Reports::buildRegister(Db(), criteria, &error);
    QApplication::restoreOverrideCursor();
    m_report = Reports::Report{Reports::makeHeading(Db(), criteria, appState().today), list.value_or(Reports::Register{})};
    m_model->setRegister(m_report.list);
    const Reports::Heading &h = m_report.heading;
    m_heading->setText((QStringList{h.firmName, h.title(), QStringLiteral("KRYTERIA")} + h.criteriaLines() +
                        QStringList{h.dateLine()})
                           .join(QLatin1Char('\n')));
    if (!list) {
        ErrorReport(error);
        return false;
    }
    return true;
}

void frmraport::print()
{
    if (!m_report.list.built) {
        dialogs().beep();
        return;
    }
    PrintEngine::instance().Drukuj(QStringLiteral("raport"), QVariant::fromValue(m_report));
}

QString frmraport::saveWorkbook()
{
    if (!m_report.list.built || !isFirmOpen()) {
        dialogs().beep();
        return {};
    }
    // Beside the firm's file; a firm on a server has a local folder of its own.
    QString folder = ServerFirms::localFolder(firmFile());
    folder.chop(1);
    const QString path = ReportWorkbook::freeFileName(folder, Reports::reportName(m_criteria.kindIndex));
    QString error;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool saved = ReportWorkbook::write(path, m_report, SafeOutput::Existing::Keep, &error);
    QApplication::restoreOverrideCursor();
    if (!saved) {
        dialogs().message(QStringLiteral("Raport nie został zapisany") + QStringLiteral("\n") + error, QString(),
                          Dialogs::Icon::Critical);
        return {};
    }
    dialogs().information(QStringLiteral("Raport został zapisany w katalogu :\n") + QDir::toNativeSeparators(folder) +
                          QStringLiteral("\nPod nazwą: ") + QFileInfo(path).fileName());
    return path;
}
