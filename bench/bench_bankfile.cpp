// Bank files, measured: 10,000 payments checked and written to Elixir-O and to
// pain.001.001.03 XML, with the time of each step and the size of each file.
#include "BenchFirm.h"
#include "documents/ChoiceLists.h"
#include "documents/FirmData.h"
#include "documents/PaymentDocument.h"
#include "exchange/BankFile.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>

int main()
{
    constexpr int count = 10000;
    FirmData firm = benchFirm();
    firm.nip = QStringLiteral("5261040828");
    QList<PaymentDocument> docs;
    const QDate day(2026, 11, 23);
    for (int i = 0; i < count; ++i) {
        PaymentDocument d = PaymentDocument::newDocument(i % 10 == 9 ? 6 : 1, day);
        d.id = i + 1;
        d.kontoFirmy = i % 2 ? QStringLiteral("13102029640000123456789012")
                             : QStringLiteral("22102029640000999988887777");
        d.klientNazwa = QStringLiteral("Hurtownia Gęśla nr %1").arg(i);
        d.klientUlica = QStringLiteral("Kwiatowa %1").arg(i % 200 + 1);
        d.klientKod = QStringLiteral("31-000");
        d.klientMiasto = QStringLiteral("Kraków");
        d.klientKonto = QStringLiteral("57114020040000300201234567");
        d.zaDokumentNazwa =
            i % 3 ? QStringLiteral("Faktura %1/11/2026").arg(i)
                  : QStringLiteral("/VAT/23,00/IDC/5261040828/INV/FV %1/2026/TXT/zaplata").arg(i);
        d.wartosc = Money::fromGrosze(10000 + i);
        if (d.rodzaj == 6) {
            d.klientKonto = QStringLiteral("16101000712222526104082800");
            d.pod.rok = qint16(ChoiceLists::yearPosition(ChoiceLists::taxYears(), 2026));
            d.pod.nrOkresu = QStringLiteral("10");
            d.pod.symbol = QStringLiteral("VAT-7");
        }
        d.dataDokumentu = day.addDays(i % 3);
        docs << d;
    }
    QTemporaryDir dir;
    for (BankFile::Format format : {BankFile::Format::Elixir, BankFile::Format::Xml}) {
        BankFile::Options o;
        o.format = format;
        o.encoding = BankFile::Encoding::Cp852;
        o.today = day;
        QElapsedTimer t;
        t.start();
        const BankFile::Checked checked = BankFile::check(docs, firm, o);
        const double checkMs = t.nsecsElapsed() / 1e6;
        if (!checked.ok()) {
            std::printf("unexpected problems: %s\n", qPrintable(checked.problems.value(0)));
            return 1;
        }
        t.restart();
        const QByteArray bytes =
            format == BankFile::Format::Xml
                ? BankFile::pain001(checked.payments, firm.nazwa, QDateTime(day, QTime(12, 0)))
                : BankFile::elixirO(checked.payments, o.encoding);
        const double buildMs = t.nsecsElapsed() / 1e6;
        t.restart();
        const QString path =
            dir.filePath(format == BankFile::Format::Xml ? QStringLiteral("p.xml") : QStringLiteral("p.pli"));
        if (!BankFile::writeFile(path, bytes, true))
            return 1;
        const double writeMs = t.nsecsElapsed() / 1e6;
        std::printf("%-8s %d payments: check %.1f ms, build %.1f ms, write %.1f ms; file %.1f KiB (%.0f "
                    "bytes a payment)\n",
                    format == BankFile::Format::Xml ? "XML" : "Elixir-O", count, checkMs, buildMs, writeMs,
                    bytes.size() / 1024.0, double(bytes.size()) / count);
    }
    return 0;
}
