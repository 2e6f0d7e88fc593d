list(APPEND CORE_SOURCES
  documents/TransfersOfDay.cpp
  documents/ZusAccount.cpp
  documents/TaxAccount.cpp
  documents/Accounts.cpp
  documents/BrowseQuery.cpp
  documents/ChoiceLists.cpp
  documents/ContractorStore.cpp
  documents/DocumentKinds.cpp
  documents/DocumentStore.cpp
  documents/EntryRules.cpp
  documents/FirmData.cpp
  documents/ScheduledPayments.cpp
  documents/Transaction.cpp
)
list(APPEND UI_SOURCES
  documents/WindowFields.cpp
  documents/frmKontrahenci.cpp
  documents/frmSzukaj.cpp
  documents/frmfirma.cpp
  documents/frmprzegladanie.cpp
  documents/frmprzelew.cpp
  documents/frmslzapl_term.cpp
  documents/frmzap_term.cpp
  documents/frmZbiorowka.cpp
)
# Split payment box of the bank transfer window.
list(APPEND UI_SOURCES documents/SplitPaymentBox.cpp)
