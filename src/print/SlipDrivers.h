#pragma once

class PrintEngine;

// The print engine's drivers of the slips, by procedure word:
//   "dprzelew"     the document (job parameter: its Id) on the slip of its kind;
//   "dprzelewZus"  the same with the firm's short name as the payer;
//   "zbiorowka"    the collective statement (job parameter: a CollectiveStatement);
//   "raport"       the report pages (job parameter: a Reports::Report, see reports/).
// Called once at start-up, by the command line and by tests.
void registerSlipDrivers();

// The two document drivers themselves: read the document and the firm, print the slip.
void DrukDokumentu(PrintEngine &engine);
void DrukDokumentuZus(PrintEngine &engine);
