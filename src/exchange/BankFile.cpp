#include "BankFile.h"

#include "documents/PaymentTitles.h"
#include "db/Structure.h"
#include "documents/DocumentKinds.h"
#include "documents/DocumentStore.h"
#include "documents/FirmData.h"
#include "documents/PaymentDocument.h"
#include "db/Transaction.h"
#include "documents/ZusAccount.h"
#include "validation/CheckDigits.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMap>
#include <QSaveFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringEncoder>
#include <QXmlStreamWriter>

namespace BankFile {

namespace {

QByteArray codecName(Encoding e)
{
    switch (e) {
    case Encoding::Iso8859_2:
        return "ISO-8859-2";
    case Encoding::Cp852:
        return "IBM852";
    case Encoding::Cp1250:
        break;
    }
    return "windows-1250";
}

// The characters of `text` that the code page lacks, each once.
QString missingCharacters(const QString &text, Encoding e)
{
    // Each character is asked of the code page once; a batch repeats the same few letters.
    static QHash<QPair<int, char16_t>, bool> known;
    QString missing;
    for (QChar c : text) {
        if (c.unicode() < 0x80 || missing.contains(c))
            continue;
        const auto key = qMakePair(int(e), c.unicode());
        auto it = known.constFind(key);
        if (it == known.constEnd()) {
            QStringEncoder enc(codecName(e).constData());
            const QByteArray b = enc.encode(QString(c));
            it = known.insert(key, !enc.hasError() && !b.isEmpty() && b != "?");
        }
        if (!*it)
            missing += c;
    }
    return missing;
}

QString joined(const QString &a, const QString &b)
{
    return QString(a.trimmed() + QLatin1Char(' ') + b.trimmed()).trimmed();
}

// Name and address lines of a party as one Elixir-O field.
QStringList partyLines(const Party &p)
{
    // Name and address lines are lines of their own: the spaces they break at may go.
    QStringList lines = wrapLines(p.name.simplified());
    if (!p.street.trimmed().isEmpty())
        lines << wrapLines(p.street.simplified());
    const QString place = joined(p.postCode, p.town);
    if (!place.isEmpty())
        lines << wrapLines(place);
    for (QString &line : lines)
        line = line.trimmed();
    return lines;
}

QString firmStreet(const FirmData &f)
{
    QString number = f.nrDomu.trimmed();
    if (!f.nrLokalu.trimmed().isEmpty())
        number += QLatin1Char('/') + f.nrLokalu.trimmed();
    return joined(f.ulica, number);
}

QString quotedField(const QStringList &lines)
{
    return QLatin1Char('"') + lines.join(QLatin1Char('|')) + QLatin1Char('"');
}

QString amountText(Money m)
{
    return m.plain(QLatin1Char('.'));
}

} // namespace

std::optional<Format> formatByName(const QString &name)
{
    const QString n = name.trimmed().toLower();
    if (n == QLatin1String("elixir"))
        return Format::Elixir;
    if (n == QLatin1String("xml"))
        return Format::Xml;
    return std::nullopt;
}

QString formatName(Format f)
{
    return f == Format::Xml ? QStringLiteral("xml") : QStringLiteral("elixir");
}

std::optional<Encoding> encodingByName(const QString &name)
{
    const QString n = name.trimmed().toLower();
    if (n == QLatin1String("cp1250") || n == QLatin1String("windows-1250"))
        return Encoding::Cp1250;
    if (n == QLatin1String("iso-8859-2") || n == QLatin1String("iso8859-2"))
        return Encoding::Iso8859_2;
    if (n == QLatin1String("cp852") || n == QLatin1String("ibm852"))
        return Encoding::Cp852;
    return std::nullopt;
}

QString encodingName(Encoding e)
{
    switch (e) {
    case Encoding::Iso8859_2:
        return QStringLiteral("iso-8859-2");
    case Encoding::Cp852:
        return QStringLiteral("cp852");
    case Encoding::Cp1250:
        break;
    }
    return QStringLiteral("cp1250");
}

QString encodingCaption(Encoding e)
{
    switch (e) {
    case Encoding::Iso8859_2:
        return QStringLiteral("ISO-8859-2");
    case Encoding::Cp852:
        return QStringLiteral("CP852 (DOS)");
    case Encoding::Cp1250:
        break;
    }
    return QStringLiteral("Windows-1250");
}

QStringList wrapLines(const QString &text, int width)
{
    // Banks join the lines back without a separator, so no character may be dropped: a
    // line ends after a space or before a slash (the tags of structured titles).
    QStringList lines;
    QString rest = text;
    while (rest.size() > width) {
        qsizetype cut = -1;
        for (qsizetype i = width; i > 0 && cut < 0; --i)
            if (rest.at(i - 1) == QLatin1Char(' ') || rest.at(i) == QLatin1Char('/'))
                cut = i;
        if (cut <= 0)
            cut = width;
        lines << rest.left(cut);
        rest = rest.mid(cut);
    }
    if (!rest.isEmpty() || lines.isEmpty())
        lines << rest;
    return lines;
}

QString accountDigits(const QString &typed)
{
    return CheckDigits::accountDigits(typed);
}

QString accountProblem(const QString &typed)
{
    const std::optional<QString> problem = CheckDigits::nrbProblem(typed);
    if (!problem)
        return {};
    // The checks speak in sentences; here they follow "rachunek odbiorcy: ".
    QString text = *problem;
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text.left(1).toLower() + text.mid(1) + QStringLiteral(" (%1)").arg(typed.trimmed());
}

Checked check(const QList<PaymentDocument> &docs, const FirmData &firm, const Options &options)
{
    Checked out;
    const bool elixir = options.format == Format::Elixir;
    for (const PaymentDocument &doc : docs) {
        QStringList problems;
        auto problem = [&](const QString &text) { problems << text; };

        Payment p;
        p.documentId = doc.id;
        p.amount = doc.wartosc;
        QDate date = options.executionDate.value_or(doc.dataDokumentu);
        if (!options.executionDate && options.today.isValid() && (!date.isValid() || date < options.today))
            date = options.today;
        p.executionDate = date;
        if (!date.isValid())
            problem(QStringLiteral("brak daty wykonania"));
        else if (options.today.isValid() && date < options.today)
            problem(QStringLiteral("data wykonania %1 już minęła")
                        .arg(date.toString(QStringLiteral("dd-MM-yyyy"))));

        p.payer = Party{joined(firm.nazwa, firm.nazwa1), firmStreet(firm), firm.kod, firm.miasto,
                        accountDigits(doc.kontoFirmy)};
        p.payee = Party{joined(doc.klientNazwa, doc.klientNazwa1), doc.klientUlica, doc.klientKod,
                        doc.klientMiasto, accountDigits(doc.klientKonto)};

        switch (doc.rodzaj) {
        case DocumentKinds::PrzelewBankowy:
            p.title = doc.zaDokumentNazwa.trimmed();
            if (const auto split = PaymentTitles::parseSplit(p.title)) {
                p.classification = SplitPayment;
                const QString why = PaymentTitles::splitProblem(*split, doc.wartosc);
                if (!why.isEmpty())
                    problem(QStringLiteral("podzielona płatność: ") + why);
            } else if (p.title.startsWith(QLatin1String("/VAT/"))) {
                problem(QStringLiteral("tytuł zaczyna się od /VAT/, ale nie ma postaci "
                                       "/VAT/kwota/IDC/NIP/INV/faktura/TXT/tekst"));
            }
            break;
        case DocumentKinds::PrzelewZus:
            if (!PaymentTitles::isZusOnNrs(doc))
                problem(QStringLiteral("rachunki ZUS sprzed 2018 roku są zamknięte; składki płaci się "
                                       "na rachunek indywidualny (NRS)"));
            else if (CheckDigits::accountDigits(firm.nrs).isEmpty())
                problem(QStringLiteral("firma nie ma rachunku składkowego NRS (System, Dane firmy)"));
            // Paid as an ordinary transfer to ZUS on the firm's own contribution account.
            p.title = PaymentTitles::zusTitle(doc);
            p.payee = Party{ZusAccount::RecipientName, {}, {}, {}, accountDigits(firm.nrs)};
            break;
        case DocumentKinds::PrzelewPodatki: {
            p.classification = Tax;
            const QString why = PaymentTitles::taxTitleProblem(doc, firm);
            if (!why.isEmpty())
                problem(QStringLiteral("przelew podatku: ") + why);
            else
                p.title = PaymentTitles::taxTitle(doc, firm);
            break;
        }
        default:
            problem(QStringLiteral("to nie jest przelew, bank go nie przyjmie w pliku"));
            break;
        }

        if (doc.wartosc <= Money())
            problem(QStringLiteral("kwota musi być większa od zera"));
        else if (doc.wartosc > MaxAmount)
            problem(QStringLiteral("kwota %1 przekracza %2").arg(Kwota(doc.wartosc), Kwota(MaxAmount)));
        else if (doc.wartosc.roundedToGrosze() != doc.wartosc)
            problem(QStringLiteral("kwota %1 ma ułamek grosza").arg(doc.wartosc.exactText()));

        const QString payerWhy = accountProblem(doc.kontoFirmy);
        if (!payerWhy.isEmpty())
            problem(QStringLiteral("rachunek firmy: ") + payerWhy);
        const QString payeeWhy = accountProblem(doc.czyZus() ? firm.nrs : doc.klientKonto);
        if (!payeeWhy.isEmpty())
            problem(QStringLiteral("rachunek odbiorcy: ") + payeeWhy);
        else if (payerWhy.isEmpty() && p.payee.account == p.payer.account)
            problem(QStringLiteral("rachunek odbiorcy jest rachunkiem firmy"));
        if (p.payer.name.isEmpty())
            problem(QStringLiteral("brak nazwy firmy (Dane firmy)"));
        if (p.payee.name.isEmpty())
            problem(QStringLiteral("brak nazwy odbiorcy"));
        if (p.title.isEmpty() && doc.rodzaj == DocumentKinds::PrzelewBankowy)
            problem(QStringLiteral("brak tytułu przelewu"));

        // Lengths and characters the format can carry.
        const struct {
            QString label;
            QStringList lines;
            QString text;
        } fields[] = {
            {QStringLiteral("nazwa i adres firmy"), partyLines(p.payer),
             p.payer.name + p.payer.street + p.payer.town},
            {QStringLiteral("nazwa i adres odbiorcy"), partyLines(p.payee),
             p.payee.name + p.payee.street + p.payee.town},
            {QStringLiteral("tytuł"), wrapLines(p.title), p.title},
        };
        for (const auto &f : fields) {
            if (elixir && f.lines.size() > LineCount)
                problem(QStringLiteral("%1 nie mieści się w %2 wierszach po %3 znaków")
                            .arg(f.label)
                            .arg(LineCount)
                            .arg(LineWidth));
            if (!elixir && f.label == QLatin1String("tytuł") && f.text.size() > LineCount * LineWidth)
                problem(QStringLiteral("tytuł ma %1 znaków, a mieści się %2")
                            .arg(f.text.size())
                            .arg(LineCount * LineWidth));
            if (elixir && (f.text.contains(QLatin1Char('"')) || f.text.contains(QLatin1Char('|'))))
                problem(QStringLiteral("%1 zawiera znak \" albo |, którego plik Elixir-O nie przenosi")
                            .arg(f.label));
            if (elixir) {
                const QString missing = missingCharacters(f.text, options.encoding);
                if (!missing.isEmpty())
                    problem(QStringLiteral("%1 zawiera znaki, których nie ma w kodowaniu %2: %3")
                                .arg(f.label, encodingCaption(options.encoding), missing));
            }
        }
        if (!elixir && p.payee.name.size() > 140)
            problem(QStringLiteral("nazwa odbiorcy jest dłuższa niż 140 znaków"));

        if (problems.isEmpty()) {
            out.payments << p;
        } else {
            const QString head =
                QStringLiteral("Dokument nr %1 (%2): ").arg(doc.id).arg(DocumentKinds::name(doc.rodzaj));
            for (const QString &text : problems)
                out.problems << head + text;
        }
    }
    if (docs.isEmpty())
        out.problems << QStringLiteral("Nie wybrano żadnego przelewu.");
    return out;
}

QByteArray elixirO(const QList<Payment> &payments, Encoding encoding)
{
    QStringEncoder enc(codecName(encoding).constData());
    QByteArray bytes;
    for (const Payment &p : payments) {
        const QStringList fields = {
            QStringLiteral("110"),
            p.executionDate.toString(QStringLiteral("yyyyMMdd")),
            QString::number(p.amount.toGrosze()),
            p.payer.account.mid(2, 8),
            QStringLiteral("0"),
            QLatin1Char('"') + p.payer.account + QLatin1Char('"'),
            QLatin1Char('"') + p.payee.account + QLatin1Char('"'),
            quotedField(partyLines(p.payer)),
            quotedField(partyLines(p.payee)),
            QStringLiteral("0"),
            p.payee.account.mid(2, 8),
            quotedField(wrapLines(p.title)),
            QStringLiteral("\"\""),
            QStringLiteral("\"\""),
            QLatin1Char('"') + QString::number(int(p.classification)) + QLatin1Char('"'),
            QStringLiteral("\"\""),
        };
        bytes += QByteArray(enc.encode(fields.join(QLatin1Char(','))));
        bytes += "\r\n";
    }
    return bytes;
}

QByteArray pain001(const QList<Payment> &payments, const QString &initiatingParty, const QDateTime &created)
{
    // One PmtInf per paying account and execution date, in the order they first appear.
    QList<QPair<QString, QDate>> keys;
    QMap<QPair<QString, QDate>, QList<const Payment *>> groups;
    Money total;
    for (const Payment &p : payments) {
        const auto key = qMakePair(p.payer.account, p.executionDate);
        if (!groups.contains(key))
            keys << key;
        groups[key] << &p;
        total += p.amount;
    }
    const QString msgId = QStringLiteral("ZLECANKI-") + created.toString(QStringLiteral("yyyyMMddHHmmsszzz"));

    QByteArray bytes;
    QXmlStreamWriter w(&bytes);
    w.setAutoFormatting(true);
    w.writeStartDocument();
    w.writeDefaultNamespace(QStringLiteral("urn:iso:std:iso:20022:tech:xsd:pain.001.001.03"));
    w.writeStartElement(QStringLiteral("Document"));
    w.writeStartElement(QStringLiteral("CstmrCdtTrfInitn"));
    w.writeStartElement(QStringLiteral("GrpHdr"));
    w.writeTextElement(QStringLiteral("MsgId"), msgId);
    w.writeTextElement(QStringLiteral("CreDtTm"), created.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")));
    w.writeTextElement(QStringLiteral("NbOfTxs"), QString::number(payments.size()));
    w.writeTextElement(QStringLiteral("CtrlSum"), amountText(total));
    w.writeStartElement(QStringLiteral("InitgPty"));
    w.writeTextElement(QStringLiteral("Nm"), initiatingParty.left(140));
    w.writeEndElement();
    w.writeEndElement(); // GrpHdr

    auto address = [&w](const Party &p) {
        if (p.street.trimmed().isEmpty() && p.town.trimmed().isEmpty())
            return;
        w.writeStartElement(QStringLiteral("PstlAdr"));
        if (!p.street.trimmed().isEmpty())
            w.writeTextElement(QStringLiteral("StrtNm"), p.street.simplified().left(70));
        if (!p.postCode.trimmed().isEmpty())
            w.writeTextElement(QStringLiteral("PstCd"), p.postCode.trimmed().left(16));
        if (!p.town.trimmed().isEmpty())
            w.writeTextElement(QStringLiteral("TwnNm"), p.town.simplified().left(35));
        w.writeTextElement(QStringLiteral("Ctry"), QStringLiteral("PL"));
        w.writeEndElement();
    };
    auto account = [&w](const QString &element, const QString &digits) {
        w.writeStartElement(element);
        w.writeStartElement(QStringLiteral("Id"));
        w.writeTextElement(QStringLiteral("IBAN"), QStringLiteral("PL") + digits);
        w.writeEndElement();
        w.writeEndElement();
    };
    auto agent = [&w](const QString &element, const QString &digits) {
        w.writeStartElement(element);
        w.writeStartElement(QStringLiteral("FinInstnId"));
        w.writeStartElement(QStringLiteral("ClrSysMmbId"));
        w.writeTextElement(QStringLiteral("MmbId"), digits.mid(2, 8));
        w.writeEndElement();
        w.writeEndElement();
        w.writeEndElement();
    };

    int n = 0;
    for (const auto &key : keys) {
        const QList<const Payment *> &group = groups.value(key);
        Money sum;
        for (const Payment *p : group)
            sum += p->amount;
        const Payment &first = *group.first();
        w.writeStartElement(QStringLiteral("PmtInf"));
        w.writeTextElement(QStringLiteral("PmtInfId"), QStringLiteral("%1-%2").arg(msgId.right(20)).arg(++n));
        w.writeTextElement(QStringLiteral("PmtMtd"), QStringLiteral("TRF"));
        w.writeTextElement(QStringLiteral("NbOfTxs"), QString::number(group.size()));
        w.writeTextElement(QStringLiteral("CtrlSum"), amountText(sum));
        w.writeTextElement(QStringLiteral("ReqdExctnDt"), key.second.toString(Qt::ISODate));
        w.writeStartElement(QStringLiteral("Dbtr"));
        w.writeTextElement(QStringLiteral("Nm"), first.payer.name.simplified().left(140));
        address(first.payer);
        w.writeEndElement();
        account(QStringLiteral("DbtrAcct"), key.first);
        agent(QStringLiteral("DbtrAgt"), key.first);
        for (const Payment *p : group) {
            w.writeStartElement(QStringLiteral("CdtTrfTxInf"));
            w.writeStartElement(QStringLiteral("PmtId"));
            w.writeTextElement(QStringLiteral("EndToEndId"), QStringLiteral("ZL%1").arg(p->documentId));
            w.writeEndElement();
            if (p->classification != Ordinary) {
                // Banks know split payments and tax transfers by their Elixir classification.
                w.writeStartElement(QStringLiteral("PmtTpInf"));
                w.writeStartElement(QStringLiteral("LclInstrm"));
                w.writeTextElement(QStringLiteral("Prtry"), QString::number(int(p->classification)));
                w.writeEndElement();
                w.writeEndElement();
            }
            w.writeStartElement(QStringLiteral("Amt"));
            w.writeStartElement(QStringLiteral("InstdAmt"));
            w.writeAttribute(QStringLiteral("Ccy"), QStringLiteral("PLN"));
            w.writeCharacters(amountText(p->amount));
            w.writeEndElement();
            w.writeEndElement();
            agent(QStringLiteral("CdtrAgt"), p->payee.account);
            w.writeStartElement(QStringLiteral("Cdtr"));
            w.writeTextElement(QStringLiteral("Nm"), p->payee.name.simplified().left(140));
            address(p->payee);
            w.writeEndElement();
            account(QStringLiteral("CdtrAcct"), p->payee.account);
            w.writeStartElement(QStringLiteral("RmtInf"));
            w.writeTextElement(QStringLiteral("Ustrd"), p->title);
            w.writeEndElement();
            w.writeEndElement(); // CdtTrfTxInf
        }
        w.writeEndElement(); // PmtInf
    }
    w.writeEndElement();
    w.writeEndElement();
    w.writeEndDocument();
    return bytes;
}

bool writeFile(const QString &path, const QByteArray &bytes, bool overwrite, QString *error)
{
    auto fail = [error](const QString &text) {
        if (error)
            *error = text;
        return false;
    };
    if (QFileInfo::exists(path) && !overwrite)
        return fail(QStringLiteral("Plik %1 już istnieje.").arg(path));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(QStringLiteral("Nie można utworzyć pliku %1: %2").arg(path, file.errorString()));
    if (file.write(bytes) != bytes.size() || !file.commit())
        return fail(QStringLiteral("Nie można zapisać pliku %1: %2").arg(path, file.errorString()));
    return true;
}

Checked checkStored(const QSqlDatabase &db, const QList<qint32> &ids, const Options &options)
{
    QString error;
    const std::optional<FirmData> firm = FirmStore::read(db, &error);
    if (!firm) {
        Checked out;
        out.problems << (error.isEmpty() ? QStringLiteral("Firma nie ma jeszcze swoich danych.") : error);
        return out;
    }
    QList<PaymentDocument> docs;
    QStringList missing;
    for (qint32 id : ids) {
        if (const auto doc = DocumentStore::read(db, id, &error))
            docs << *doc;
        else
            missing << QStringLiteral("Dokument nr %1: nie ma go w bazie firmy.").arg(id);
    }
    Checked out = check(docs, *firm, options);
    out.problems = missing + out.problems;
    return out;
}

std::pair<Format, Encoding> firmChoice(const QSqlDatabase &db)
{
    QSqlQuery q(db);
    if (q.exec(QStringLiteral("SELECT Format, Kodowanie FROM UstawieniaBanku ORDER BY rowid LIMIT 1")) &&
        q.next())
        return {formatByName(q.value(0).toString()).value_or(Format::Elixir),
                encodingByName(q.value(1).toString()).value_or(Encoding::Cp1250)};
    return {Format::Elixir, Encoding::Cp1250};
}

bool saveFirmChoice(QSqlDatabase db, Format format, Encoding encoding)
{
    Transaction t(db);
    QSqlQuery q(db);
    if (!t.isActive() || !q.exec(QStringLiteral("DELETE FROM UstawieniaBanku")))
        return false;
    q.prepare(QStringLiteral("INSERT INTO UstawieniaBanku (Format, Kodowanie) VALUES (?, ?)"));
    q.addBindValue(formatName(format));
    q.addBindValue(encodingName(encoding));
    return q.exec() && t.commit();
}

Outcome send(QSqlDatabase db, const QList<qint32> &ids, const Options &options, const QString &path,
             bool overwrite)
{
    Outcome out;
    QString error;
    const Checked checked = checkStored(db, ids, options);
    out.problems << checked.problems;
    if (!out.problems.isEmpty() || !checked.ok())
        return out;

    const QDateTime created =
        QDateTime(options.today.isValid() ? options.today : QDate::currentDate(), QTime::currentTime());
    const QByteArray bytes = options.format == Format::Xml
                                 ? pain001(checked.payments, checked.payments.first().payer.name, created)
                                 : elixirO(checked.payments, options.encoding);
    Transaction t(db);
    if (!t.isActive()) {
        out.problems << t.error();
        return out;
    }
    if (!SentStore::record(db, ids, created.date(), QFileInfo(path).fileName(), options.format, &error)) {
        out.problems << error;
        return out;
    }
    if (!writeFile(path, bytes, overwrite, &error)) {
        out.problems << error;
        return out;
    }
    if (!t.commit()) {
        out.problems << t.error();
        return out;
    }
    out.written = true;
    out.count = int(checked.payments.size());
    for (const Payment &p : checked.payments)
        out.total += p.amount;
    return out;
}

QList<qint32> transfersOfDay(const QSqlDatabase &db, const QDate &day, int account, QString *error)
{
    QList<qint32> ids;
    QSqlQuery q(db);
    q.prepare(
        QStringLiteral("SELECT id FROM zlecanki WHERE rodzaj IN (1,5,6) AND data_dokumentu=? %1 ORDER BY id")
            .arg(account > 0 ? QStringLiteral("AND banknr=?") : QString()));
    q.addBindValue(day.toString(Qt::ISODate));
    if (account > 0)
        q.addBindValue(account);
    if (!q.exec()) {
        if (error)
            *error = Structure::explainError(q.lastError());
        return ids;
    }
    while (q.next())
        ids << q.value(0).toInt();
    return ids;
}

} // namespace BankFile

namespace SentStore {

bool record(QSqlDatabase &db, const QList<qint32> &ids, const QDate &date, const QString &fileName,
            BankFile::Format format, QString *error)
{
    QSqlQuery q(db);
    q.prepare(
        QStringLiteral("INSERT INTO WyslaneDoBanku (Dokument, Data, Plik, Format) VALUES (?, ?, ?, ?)"));
    for (qint32 id : ids) {
        q.addBindValue(id);
        q.addBindValue(date.toString(Qt::ISODate));
        q.addBindValue(fileName);
        q.addBindValue(BankFile::formatName(format));
        if (!q.exec()) {
            if (error)
                *error = Structure::explainError(q.lastError());
            return false;
        }
    }
    return true;
}

QList<Entry> entries(const QSqlDatabase &db, const QList<qint32> &ids)
{
    QList<Entry> out;
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT Dokument, Data, Plik, Format FROM WyslaneDoBanku ORDER BY ID")))
        return out;
    while (q.next()) {
        const qint32 id = q.value(0).toInt();
        if (!ids.isEmpty() && !ids.contains(id))
            continue;
        out << Entry{id, QDate::fromString(q.value(1).toString(), Qt::ISODate), q.value(2).toString(),
                     q.value(3).toString()};
    }
    return out;
}

QList<qint32> sentAmong(const QSqlDatabase &db, const QList<qint32> &ids)
{
    QList<qint32> out;
    for (const Entry &e : entries(db, ids))
        if (!out.contains(e.documentId))
            out << e.documentId;
    return out;
}

} // namespace SentStore
