#pragma once

#include "Contractor.h"

#include <QList>
#include <QObject>
#include <QSqlDatabase>
#include <QString>

#include <optional>

// Tells open windows that the contractors changed (added, edited, deleted), also when a
// document save added its recipient.
class ContractorEvents : public QObject {
    Q_OBJECT
public:
    static ContractorEvents &instance();

Q_SIGNALS:
    void changed();
};

// The contractors dictionary (table kontrahenci). Every function reports a failure as
// false or nothing, with a Polish message in `error`.
namespace ContractorStore {

// What a search looks at.
enum class SearchBy { Name = 0, Street = 1, Town = 2, Nip = 3 };

// Every contractor's name, in the order of names (Polish alphabet).
std::optional<QList<ContractorName>> list(const QSqlDatabase &db, QString *error = nullptr);
std::optional<Contractor> read(const QSqlDatabase &db, qint32 id, QString *error = nullptr);
// Stores a new contractor; returns its Id.
std::optional<qint32> insert(QSqlDatabase db, const Contractor &contractor, QString *error = nullptr);
// Rewrites the contractor with contractor.id.
bool update(QSqlDatabase db, const Contractor &contractor, QString *error = nullptr);
bool remove(QSqlDatabase db, qint32 id, QString *error = nullptr);

// The Ids of the contractors whose field holds `text` (blanks at both ends dropped),
// without regard to letter case, Polish letters included; by name Name looks at both
// name lines. Every character of the text is taken as it is. In the order of names.
std::optional<QList<qint32>> search(const QSqlDatabase &db, SearchBy by, const QString &text,
                                    QString *error = nullptr);

// The Id of the contractor named `recipient.nazwa` (letter case and blanks at the ends aside), adding `recipient` when
// there is none. For a save that holds its own transaction: `added` tells whether a
// row was added, so the caller can announce it after committing.
std::optional<qint32> idForName(QSqlDatabase &db, const Contractor &recipient, bool *added, QString *error);

} // namespace ContractorStore
