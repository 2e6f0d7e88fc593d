#include "ReportRegister.h"

#include "DateText.h"
#include "db/Structure.h"
#include "documents/DocumentKinds.h"
#include "documents/FirmData.h"
#include "print/Slip.h"

#include <QSqlError>
#include <QSqlQuery>

namespace Reports {

QString reportName(int kindIndex)
{
    static const char *const names[KindCount] = {"Lista Przelewów bankowych", "Lista Bankowych dowodów wpłat",
                                                 "Lista Przekazów na konto", "Lista Przekazów imiennych"};
    return kindIndex >= 0 && kindIndex < KindCount ? QString::fromUtf8(names[kindIndex]) : QString();
}

QStringList Register::lines() const
{
    QStringList out;
    if (!built)
        return out;
    out.reserve(rows.size() + 1);
    const QChar tab = QLatin1Char('\t');
    for (const ReportRow &r : rows)
        out << DateText::format(r.date) + tab + r.contractor + tab + r.title + tab + Kwota(r.amount);
    out << TotalCaption + tab + tab + tab + Kwota(total);
    return out;
}

std::optional<Register> buildRegister(QSqlDatabase db, const Criteria &criteria, QString *error)
{
    Register list;
    if (criteria.kindIndex >= 0 && criteria.kindIndex < KindCount) {
        list.built = true;
        const Condition period = BuildPeriodCondition(criteria.period, QStringLiteral("DATA_DOKUMENTU"));
        QString sql = QStringLiteral("SELECT DATA_DOKUMENTU, KLIENT_NAZWA, ZA_DOKUMENT_NAZWA, WARTOSC FROM zlecanki "
                                     "WHERE RODZAJ=? AND ") +
                      period.sql;
        // Ticked contractors: their marks choose the documents, by the contractor each
        // document was issued to.
        QVariantList ticked;
        if (criteria.contractors == ContractorChoice::Ticked && criteria.choiceInMemory) {
            QStringList marks;
            for (qint32 id : criteria.tickedIds) {
                marks << QStringLiteral("?");
                ticked << id;
            }
            sql += QStringLiteral(" AND KLIENT_ID IN (") + marks.join(QLatin1Char(',')) + QLatin1Char(')');
        } else if (criteria.contractors == ContractorChoice::Ticked) {
            sql += QStringLiteral(" AND KLIENT_ID IN (SELECT ID FROM Kontrahenci WHERE WYBRANY=1)");
        }
        sql += QStringLiteral(" ORDER BY DATA_DOKUMENTU, ID");
        QSqlQuery q(db);
        q.setForwardOnly(true);
        bool ok = q.prepare(sql);
        q.addBindValue(criteria.kindIndex + 1);
        for (const QVariant &v : period.values + ticked)
            q.addBindValue(v);
        ok = ok && q.exec();
        while (ok && q.next()) {
            ReportRow r;
            r.date = DateText::fromIso(q.value(0).toString()).value_or(QDate());
            r.contractor = q.value(1).toString();
            r.title = q.value(2).toString();
            // Null is 0; the row counts with the amount as the list shows it.
            r.amount = Money::fromUnits(q.value(3).toLongLong()).roundedToGrosze();
            const auto total = list.total.checkedAdd(r.amount);
            if (!total) {
                if (error)
                    *error = QStringLiteral("Suma dokumentów tego okresu jest za duża, by ją zapisać; raportu nie "
                                            "utworzono. Wybierz krótszy okres.");
                if (!criteria.choiceInMemory)
                    ClearContractorMarks(db);
                return std::nullopt;
            }
            list.total = *total;
            list.rows.append(std::move(r));
        }
        if (!ok) {
            if (error)
                *error = Structure::explainError(q.lastError());
            if (!criteria.choiceInMemory)
                ClearContractorMarks(db);
            return std::nullopt;
        }
    }
    if (!criteria.choiceInMemory && !ClearContractorMarks(db, error))
        return std::nullopt;
    return list;
}

QStringList Heading::criteriaLines() const
{
    const QChar close = QLatin1Char(')');
    return {QStringLiteral("  (OKRES - ") + period + close, QStringLiteral("  (Dokumenty - ") + documents + close,
            QStringLiteral("  (Kontrahenci - ") + contractors + close};
}

QString Heading::dateLine() const
{
    return QStringLiteral("Na dzień ") + DateText::format(date);
}

Heading makeHeading(const QSqlDatabase &db, const Criteria &criteria, const QDate &today)
{
    Heading h;
    const FirmData firm = FirmStore::read(db).value_or(FirmData{});
    h.firmName = firm.nazwa.trimmed();
    for (const QString &line : {Slip::streetLine(firm.ulica, firm.nrDomu, firm.nrLokalu),
                                Slip::townLine(firm.kod, firm.miasto)})
        if (!line.trimmed().isEmpty())
            h.firmAddress << line.trimmed();
    h.period = BuildPeriodCaption(criteria.period);
    h.documents = DocumentKinds::pluralName(qint16(criteria.kindIndex + 1));
    h.contractors = BuildContractorCaption(criteria.contractors, criteria.tickedNames);
    h.date = today;
    return h;
}

void RegisterModel::setRegister(const Register &list)
{
    beginResetModel();
    m_list = list;
    endResetModel();
}

int RegisterModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid() || !m_list.built)
        return 0;
    return int(m_list.rows.size()) + 1;
}

int RegisterModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 4;
}

QVariant RegisterModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const bool totalRow = index.row() == m_list.rows.size();
    if (role == Qt::TextAlignmentRole)
        return index.column() == 3 ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    if (role != Qt::DisplayRole)
        return {};
    if (totalRow) {
        switch (index.column()) {
        case 0:
            return TotalCaption;
        case 3:
            return Kwota(m_list.total);
        default:
            return QString();
        }
    }
    const ReportRow &r = m_list.rows.at(index.row());
    switch (index.column()) {
    case 0:
        return DateText::format(r.date);
    case 1:
        return r.contractor;
    case 2:
        return r.title;
    default:
        return Kwota(r.amount);
    }
}

QVariant RegisterModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section > 3)
        return QAbstractTableModel::headerData(section, orientation, role);
    static const char *const captions[] = {"Data", "Kontrahent", "Treść", "Wartość"};
    return QString::fromUtf8(captions[section]);
}

} // namespace Reports
