#pragma once

#include "Slip.h"

// Every form's coordinates, one table per form: twips from the top left corner of the
// part (or copy) being drawn, before the user's extra margins. A correction to a form is
// one edit here. The standard transfer forms are A6 landscape parts (148 x 105 mm) with
// rows of 27 character boxes 5.08 mm apart, starting 5.3 mm from the part's left edge.
namespace SlipLayouts {

using Slip::Boxes;
using Slip::boxX;
using Slip::Frame;
using Slip::Label;
using Slip::NumberRowBox;
using Slip::TextRowBox;

constexpr qreal Left = 300;                         // first box of every row
constexpr qreal Right = Left + 27 * Slip::BoxPitch; // end of a full row

// Bank transfer / cash deposit form ("Polecenie przelewu" / "Wpłata gotówkowa").
struct BankForm {
    Label title{nullptr, Left, 100, 10, true};
    qreal partLabelRight = Right, partLabelY = 130;
    Boxes recipient{"Nazwa odbiorcy", Left, 545, 27};
    Boxes recipientCd{"Nazwa odbiorcy cd.", Left, 935, 27};
    Label checkDigits{"l.k.", Left, 1195, 6};
    Boxes recipientAccount{"nr rachunku odbiorcy", Left, 1325, 26, NumberRowBox, boxX(Left, 2)};
    qreal wpY = 1785;
    Boxes currency{"waluta", boxX(Left, 11), 1785, 3, NumberRowBox};
    Boxes amount{"kwota", boxX(Left, 15), 1785, 12, NumberRowBox};
    // One row for both: the payer's account for a transfer, the amount in words for a
    // cash deposit, captioned for both as on the standard form.
    Boxes payerAccount{"nr rachunku zleceniodawcy (przelew)", Left, 2245, 26, NumberRowBox};
    Label wordsCaption{"kwota słownie (wpłata)", boxX(Left, 16), 2115, 6};
    Boxes payer{"nazwa zleceniodawcy", Left, 2705, 27};
    Boxes payerCd{"nazwa zleceniodawcy cd.", Left, 3095, 27};
    Boxes title1{"tytułem", Left, 3485, 27};
    Boxes title2{"tytułem cd.", Left, 3875, 27};
    Frame fee{"opłata:", Left, 4330, 1700, 450};
    Frame signature{"pieczęć, data i podpis(y) zleceniodawcy", 2300, 4230, Right - 2300 - 38, 820, true};
    qreal dateX = 2400, dateY = 4290;
    // The payment QR code on the customer's copy, right of a narrower signature field.
    qreal qrX = Right - 1100 - 100, qrY = 4330, signatureBesideQr = 6600 - 2300;
};
inline constexpr BankForm Bank{};

// The thicker separators of a 26-digit account: after the check digits, then every four.
inline const QList<int> AccountGroups = {1, 5, 9, 13, 17, 21};

// Tax transfer form (to a tax office): the same part and the same first seven rows.
struct TaxForm {
    Label title{nullptr, Left, 100, 10, true};
    qreal partLabelRight = Right, partLabelY = 130;
    Boxes office{"Nazwa organu podatkowego", Left, 545, 27};
    Boxes officeCd{"Nazwa organu podatkowego cd.", Left, 935, 27};
    Boxes officeAccount{"nr rachunku bankowego organu podatkowego", Left, 1325, 26, NumberRowBox};
    qreal wpY = 1765;
    Boxes currency{"waluta", boxX(Left, 11), 1765, 3, NumberRowBox};
    Boxes amount{"kwota", boxX(Left, 15), 1765, 12, NumberRowBox};
    Boxes payerAccount{"nr rachunku bankowego zobowiązanego (przelew)", Left, 2205, 26, NumberRowBox};
    Label wordsCaption{"kwota słownie (wpłata)", boxX(Left, 18), 2075, 6};
    Boxes payer{"nazwa i adres zobowiązanego", Left, 2645, 27};
    Boxes payerCd{"nazwa i adres zobowiązanego cd.", Left, 3035, 27};
    Boxes identifier{"NIP lub identyfikator uzupełniający zobowiązanego", Left, 3425, 14};
    Boxes identifierType{"typ identyfikatora", boxX(Left, 16), 3425, 1};
    Boxes period{"okres (rok, typ okresu, nr okresu)", Left, 3815, 7};
    Boxes symbol{"symbol formul. lub płatn.", boxX(Left, 10), 3815, 7};
    Boxes identification{"identyfikacja zobowiązania (rodzaj dokumentu)", Left, 4205, 20};
    Frame fee{"opłata:", Left, 4630, 1700, 400};
    Frame signature{"pieczęć, data i podpis zobowiązanego", 2300, 4530, Right - 2300 - 38, 640, true};
    qreal dateX = 2400, dateY = 4580;
};
inline constexpr TaxForm Tax{};
// The signature captions when the four parts go on two sheets.
inline constexpr const char *TaxFirstSheetSignature =
    "pieczęć, data i podpis(y) zleceniodawcy na pierwszym blankiecie";
inline constexpr const char *TaxLastSheetSignature =
    "pieczęć, data i podpis(y) zleceniodawcy na ostatnim blankiecie";

// The tax fields on the bank form (old forms): in place of the two title rows.
struct TaxFieldBlock {
    Boxes identifier{"NIP lub identyfikator uzup. zobowiązanego", Left, 3485, 14};
    Boxes identifierType{"typ identyfikatora", boxX(Left, 16), 3485, 1};
    Boxes period{"okres (rok, typ okresu, nr okresu)", Left, 3875, 7};
    Boxes symbol{"symbol formularza lub płatności", boxX(Left, 8), 3875, 6};
    Boxes identification{"identyfikacja zobowiązania (rodzaj dokumentu)", boxX(Left, 15), 3875, 12};
};
inline constexpr TaxFieldBlock TaxFieldsOnBank{};

// The simplified slip: a grid of rows 510 twips apart from the slip's top; each value
// 170 twips below its row's rule, captions in a column on the left.
struct SimplifiedSlip {
    qreal top = 250;       // the slip's top in the part
    qreal captionX = Left; // caption column
    qreal valueX = 2300;   // value column
    qreal rightX = Right;
    qreal valueBelowRule = 170;
    qreal row = 510;
    qreal rules[5] = {510, 1020, 2040, 2550, 3570};
    qreal account = 0, accountCd = 510, name = 1020, address = 1530, amount = 2040, words = 2550,
          title = 3570;
    qreal fee = 4080, bottom = 4590;
    qreal wordsWidth = 3000, wordsHeight = 830;
    qreal dateX = 5800;
    // The payment QR code right of the amount and its words, clear of the rules.
    qreal qrX = Right - 1100 - 100, qrY = 2040 + 120;
};
inline constexpr SimplifiedSlip Simplified{};

// ZUS transfer form: two parts, the same grid.
struct ZusForm {
    Label insurer{"Zakład Ubezpieczeń Społecznych", Left, 90, 9, true};
    Label subject{"Należność z tytułu składek", Left, 310, 7};
    qreal partLabelRight = Right, partLabelY = 120;
    Boxes account{"01. Nr rachunku bankowego ZUS", Left, 625, 26, NumberRowBox};
    Boxes wp{"02.", Left, 1105, 1, NumberRowBox};
    Boxes currency{nullptr, boxX(Left, 11), 1105, 3, NumberRowBox};
    Boxes amount{"03. Kwota", boxX(Left, 15), 1105, 12, NumberRowBox};
    // Field 04: the payer's account for a transfer, the amount in words for a deposit.
    Boxes payerAccount{"04. Nr rachunku bankowego płatnika", Left, 1585, 26, NumberRowBox};
    Label wordsCaption{"04. Kwota słownie", boxX(Left, 18), 1455, 6};
    Boxes payer{"05. Nazwa skrócona płatnika lub nazwisko i imię płatnika", Left, 2045, 27};
    Boxes payerCd{"Nazwa skrócona płatnika lub nazwisko i imię płatnika cd.", Left, 2435, 27};
    Boxes nip{"06. NIP płatnika", Left, 2825, 10, NumberRowBox};
    Boxes identifierType{"07.", boxX(Left, 11), 2825, 1, NumberRowBox};
    Boxes identifier{"08. Drugi identyfikator płatnika", boxX(Left, 13), 2825, 14, NumberRowBox};
    Boxes paymentType{"Typ. wpł.", Left, 3305, 1, NumberRowBox};
    Boxes declarationNumber{"10. Nr dekl.", boxX(Left, 3), 3305, 2, NumberRowBox};
    Boxes declaration{"11. Deklaracja", boxX(Left, 6), 3305, 6, NumberRowBox};
    Boxes decision{"12. Nr decyzji/umowy/tytułu wykonawczego", boxX(Left, 13), 3305, 14, NumberRowBox};
    Frame fee{"opłata:", Left, 3900, 1700, 450};
    Frame signature{"Nazwisko, imię i adres wpłacającego lub pieczęć i podpisy(y) zleceniodawcy",
                    2300,
                    3800,
                    Right - 2300 - 38,
                    1000,
                    true};
    qreal dateX = 2400, dateY = 3860;
};
inline constexpr ZusForm Zus{};

// Postal order to an account: four parts one under another on A4 portrait, kept off the
// paper's edges. Each value has its area (x, y, width, height) that nothing else enters.
struct PostalOrderForm {
    qreal top = 80, pitch = 4060;
    Frame part{nullptr, 300, 40, 11300, 4000};
    Label partLabel{nullptr, 450, 130, 8, true};
    Frame amountFrame{nullptr, 450, 430, 3200, 360};
    qreal amountX = 550, amountY = 480;
    Label words{"Słownie:", 450, 950, 7};
    qreal wordsX = 1500, wordsY = 920, wordsWidth = 6700, wordsHeight = 440;
    Label recipient{"na rachunek:", 450, 1420, 7};
    qreal recipientX = 1500, recipientY = 1390, recipientHeight = 680;
    Label bank{"Bank i nr konta:", 450, 2100, 7};
    qreal bankX = 1700, bankY = 2070, bankWidth = 6500, bankHeight = 220;
    qreal accountY = 2300, accountHeight = 280;
    Label payer{"Wpłacający", 450, 2640, 7};
    qreal payerX = 1500, payerY = 2610, payerHeight = 1360;
    Frame stamp{nullptr, 8500, 130, 3000, 2000};
    Label stampCaption{"Datownik", 8600, 180, 7};
    Label stampDots{"........", 9600, 1600, 9};
    Label fee{"Opłata", 8600, 2350, 7};
    Label feeDots{"zł.....", 9300, 2350, 7};
    Label signatureDots{"..............", 8600, 3300, 9};
    Label signature{"podpis przyjm.", 8600, 3550, 6};
    qreal lineWidth = 6700;
    // The back: the message for the account holder, behind that part.
    int backPart = 2;
    Label kind{"Rodzaj zobowiązania:", 450, 300, 8, true};
    qreal kindX = 450, kindY = 560, kindWidth = 10500, kindHeight = 3300;
};
inline constexpr PostalOrderForm PostalOrder{};

// Named postal order: the receipt, the order and the addressee's coupon side by side
// across A4 portrait; on the back (turned over the long edge) the order's back stands in
// the middle and the receipt's on the right.
struct NamedOrderForm {
    qreal top = 300;
    Frame receipt{nullptr, 300, 0, 2900, 5800};
    Frame order{nullptr, 3300, 0, 5200, 5800};
    Frame coupon{nullptr, 8600, 0, 3000, 5800};
    // the receipt ("Dowód nadania")
    Label receiptTitle{"   Dowód nadania", 350, 120, 9, true};
    Label receiptTitle2{"przekazu pocztowego", 400, 340, 8};
    Label receiptAmount{"na ", 400, 750, 9};
    Label receiptAddressee{"Adresat:", 400, 1150, 7};
    qreal receiptAddresseeY = 1320, receiptTextX = 400, receiptWidth = 2700, receiptAddresseeHeight = 950;
    Label receiptFee{"Opłata zł ............", 400, 2300, 7};
    Label receiptNumber{"Nr nadania ...........", 400, 2600, 7};
    Frame receiptStamp{nullptr, 450, 2950, 2600, 1700};
    Label keep{"Starannie przechowywać", 400, 5000, 8, true};
    // the order
    Label title1{"PRZEKAZ", 3450, 120, 14, true};
    Label title2{"POCZTOWY", 3450, 450, 14, true};
    Label amount{"na ", 3450, 950, 11, true};
    Label words{"Słownie: ", 3450, 1400, 7};
    qreal wordsX = 4100, wordsY = 1380, wordsWidth = 2350, wordsHeight = 740;
    // Sender and addressee may run under the right-hand column, which is empty down there.
    Label sender{"Nadawca:", 3450, 2150, 7};
    qreal senderY = 2320, senderHeight = 700;
    Label addressee{"Adresat:", 3450, 3050, 7};
    qreal addresseeY = 3220, addresseeHeight = 1000, orderTextX = 3450, orderTextWidth = 4950;
    Label fee{"Opłata", 6650, 120, 7};
    Label feeDots{"zł....", 6650, 320, 7};
    Frame services{"Świadczenia dodatkowe", 6650, 750, 1700, 550};
    Label number{"Nr nadania", 6650, 1500, 7};
    Frame districtStamp{"Stempel okręgowy", 3450, 4250, 1650, 1250, true};
    Frame sendingDay{"Dzień nadania", 5250, 4250, 1500, 700, true};
    Label acceptedBy{"podpis przyjm.", 5250, 5400, 6};
    Label checkedBy{" podpis kontr.", 6900, 5400, 6};
    // the coupon
    Label couponTitle{"Odcinek dla adresata", 8700, 120, 9, true};
    Label couponAmount{"na ", 8700, 500, 9};
    Label couponSender{"Nadawca:", 8700, 900, 7};
    qreal couponSenderY = 1070, couponSenderHeight = 1000, couponTextX = 8700, couponWidth = 2800;
    Label place1{"Miejsce", 8700, 2100, 7};
    Label place2{"na korespondencję", 8700, 2270, 7};
    qreal correspondenceY = 2550, correspondenceHeight = 3150;
    // the fields-only print's name
    Label fieldsOnly{"Przekaz Pocztowy", 300, 6000, 7};
};
inline constexpr NamedOrderForm NamedOrder{};

struct NamedOrderBackForm {
    Frame order{nullptr, 3400, 0, 5200, 5800};
    Frame receipt{nullptr, 8700, 0, 2900, 5800};
    Label texts[33] = {
        {"Nr karty (listy)", 3500, 120, 7},
        {"poręczeń", 3500, 290, 7},
        {"Dzień nadejścia", 6500, 120, 7},
        {"Awizowano", 3500, 700, 7},
        {"dnia..........................................200..r.", 3500, 900, 7},
        {"Podpis", 3500, 1150, 7},
        {"Notatka", 6500, 700, 7},
        {"doręczyciela", 6500, 870, 7},
        {"Kwotę wymienioną na odwrocie otrzymałem", 3500, 1550, 7, true},
        {"Przelano na rachunek ......................................", 3500, 1850, 7},
        {"dnia ................................................................................ 200 ...r.",
         3500, 2150, 7},
        {"......................................................", 3500, 2650, 7},
        {"podpis odbiorcy albo nr r-ku bankowego", 3500, 2820, 6},
        {"Znamiona dowodu tożsamości", 3500, 3150, 7, true},
        {"rodzaj dowodu", 3500, 3400, 7},
        {"........................................................................", 4500, 3400, 7},
        {"wydany przez ..............................................................", 3500, 3650, 7},
        {"........................, dn .......................m-c ........... 200...r.", 3500, 3900, 7},
        {"miejsce i data wydania", 3500, 4070, 6},
        {"Dzień wypłaty", 3500, 4450, 7},
        {"Nr księgi wypł. przekazów", 5300, 4450, 7},
        {"Podpis wypłac.", 5300, 5300, 7},
        // the receipt's back
        {"Uwaga! Reklamację dotyczącą", 8800, 150, 6.5, true},
        {"przekazu można składać w placówce", 8800, 310, 6.5},
        {"pt. w terminie 1 roku od dnia", 8800, 470, 6.5},
        {"następnego po dniu zawarcia umowy", 8800, 630, 6.5},
        {"Nadawca przekazu pocztowego", 8800, 1100, 6.5, true},
        {"uIszcza dodatkową opłatę za:", 8800, 1260, 6.5},
        {"zwrot do nadawcy przekazu pocztowego", 8800, 1420, 6.5},
        {"po wyczerpaniu, zgodnie z przepisami,", 8800, 1580, 6.5},
        {"możliwości jego doręczenia", 8800, 1740, 6.5},
        {"......................................................", 8800, 2100, 6.5},
        {"......................................................", 8800, 2400, 6.5},
    };
    Frame payoutDay{nullptr, 3500, 4650, 1600, 1000};
};
inline constexpr NamedOrderBackForm NamedOrderBack{};

// Bank deposit slip: four copies one under another on A4 portrait, kept off the edges.
struct DepositSlipForm {
    qreal top = 80, pitch = 4060;
    Frame copy{nullptr, 300, 40, 11300, 4000};
    Label title{"BANKOWY DOWÓD WPŁATY", 450, 130, 11, true};
    qreal copyNumberX = 10900, copyNumberY = 110, copyNumberSize = 12;
    Label recipient{"Nazwa i adres odbiorcy wpłaty:", 450, 560, 7};
    qreal recipientY = 730, recipientHeight = 900, leftX = 450, leftWidth = 5900;
    Label account{"Na dobro rachunku nr:", 450, 1650, 7};
    qreal accountY = 1820, accountHeight = 300;
    Label bank{"w (Banku): ", 450, 2150, 7};
    qreal bankY = 2130, bankHeight = 290;
    Label title2{"Tytuł wpłaty:", 450, 2450, 7};
    qreal titleY = 2620, titleHeight = 410;
    Label payer{"Nazwa i adres wpłacającego:", 450, 3050, 7};
    qreal payerY = 3220, payerHeight = 780;
    Label amount{"Kwota:", 6600, 560, 7};
    Frame amountFrame{nullptr, 6600, 720, 3000, 400};
    qreal amountX = 6700, amountY = 780;
    Label plan1{"Sym. planu", 9800, 560, 6};
    Label plan2{" kasowego", 9800, 700, 6};
    Frame planFrame{nullptr, 9800, 880, 1700, 240};
    Label words{"Słownie: ", 6600, 1300, 7};
    qreal wordsX = 7300, wordsY = 1280, wordsWidth = 4200, wordsHeight = 820;
    Frame stamp{nullptr, 6600, 2150, 4900, 1800};
    Label stampCaption{"Stempel banku", 6700, 3750, 7};
};
inline constexpr DepositSlipForm DepositSlip{};
inline const QStringList DepositCopies = {QStringLiteral(" I"), QStringLiteral("II"), QStringLiteral("III"),
                                          QStringLiteral("IV")};

// Collective statement: two copies on one A4 portrait sheet, "A" at the top and "D" 10 cm
// lower; the firm lines beside their caption, the amounts in columns.
struct StatementForm {
    qreal left = 567, top = 400;
    qreal band = 5670;
    qreal markY = 0;
    qreal title = 0;
    qreal firm = 623, firmValueX = 3600;
    qreal bank = 1701, bankValue = 1871;
    qreal account = 2154, accountValue = 2324;
    qreal amounts = 2608, amountsFirstRow = 2850;
    qreal columnWidth = 2100, amountRight = 1700;
    qreal amountsBottom = 4300; // the list stops above the totals
    qreal date = 4450, total = 4700, count = 4950;
    qreal signatureX = 6200, signature = 4700, signatureCaption = 4900;
    qreal valueIndent = 284;
};
inline constexpr StatementForm Statement{};

} // namespace SlipLayouts
