#pragma once

#include "documents/PaymentDocument.h"
#include "WindowFields.h"

#include <QList>
#include <QWidget>

#include <optional>

class QComboBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class SplitPaymentBox;
struct Contractor;

// "Dokument": issuing a payment document of one kind (mode 0), correcting a stored one
// (mode 1) or looking at it and printing it again (mode 2). The window only gathers its
// fields into a PaymentDocument; storing it, with the balance of the paying account and
// the recipient joining the contractors, is DocumentStore's single transaction.
class frmprzelew : public QWidget {
    Q_OBJECT
public:
    // `id` names the stored document of modes 1 and 2; a mode 0 window starts empty.
    frmprzelew(qint16 mode, qint16 kind, qint32 id = 0, QWidget *parent = nullptr);

    qint16 mode() const { return m_mode; }
    qint16 kind() const { return m_kind; }
    // The document last stored, corrected or shown; 0 before the first save of mode 0.
    qint32 currentId() const { return m_id; }

    // Fills every field from `doc` (a stored row, or a scheduled payment to be issued).
    void showDocument(const PaymentDocument &doc);
    // The fields as a document of this window's kind and the current id.
    PaymentDocument gather() const;

    // Checks the fields and stores the document; true when it was stored. A refusal has
    // been told to the user, with the focus in the offending field and nothing written.
    bool save();
    // cmdwystaw: asks about the amount, stores (modes 0 and 1) and prints the slip.
    void issue();
    // cmdanuluj: a new document starts afresh; a stored one is shown as stored.
    void abandon();

Q_SIGNALS:
    // A document was stored or corrected (its id), so lists showing it can be refilled.
    void saved(qint32 id);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QWidget *recipientPart();
    QGroupBox *zusBlock();
    QGroupBox *taxBlock();
    void fillAccounts(int keep);
    void accountChosen(int index);
    void followAccounts();
    void chooseContractor();
    void takeContractor(const Contractor &c);
    void showBlocks(const ZusBlock &zus, const TaxBlock &tax);
    void startNew();
    void load();
    void setViewing();
    // Fills the recipient's account with the firm's tax micro-account.
    void fillMicroAccount();
    bool accountMissing();
    // The amount field of the window's kind.
    QLineEdit *amountField() const;

    qint16 m_mode;
    qint16 m_kind;
    qint32 m_id;
    // The account the stored document is paid from (modes 1 and 2).
    qint16 m_storedAccount = 0;
    QString m_storedBankName;

    QComboBox *m_lstbank = nullptr;
    QLabel *m_lblbankkonto = nullptr;
    std::optional<WindowFields::RecipientFields> m_recipient;
    QLineEdit *m_zaDokument = nullptr;
    QLineEdit *m_wartosc = nullptr;
    QLineEdit *m_data = nullptr;
    QLabel *m_lblrodzaj = nullptr;
    QFormLayout *m_recipientForm = nullptr;
    QFormLayout *m_documentForm = nullptr;

    QGroupBox *m_frmZus = nullptr;
    QComboBox *m_nrZus = nullptr;
    QComboBox *m_typWpl = nullptr;
    QComboBox *m_rok = nullptr;
    QComboBox *m_miesiac = nullptr;
    QLineEdit *m_nrDekl = nullptr;
    QLineEdit *m_wartoscZus = nullptr;

    QGroupBox *m_frmPodatki = nullptr;
    QComboBox *m_okresRok = nullptr;
    QComboBox *m_typOkresu = nullptr;
    QLineEdit *m_nrOkresu = nullptr;
    QLineEdit *m_symbol = nullptr;
    QLineEdit *m_identyfikacja = nullptr;
    QLineEdit *m_wartoscPod = nullptr;

    SplitPaymentBox *m_mpp = nullptr;
    QPushButton *m_mikrorachunek = nullptr;

    QPushButton *m_wystaw = nullptr;
    QPushButton *m_szukaj = nullptr;
    QList<QLineEdit *> m_texts;
};
