#pragma once

class PrintEngine;

// The driver of the procedure "raport": the register (job parameter: a Reports::Report)
// on numbered A4 pages. The first page opens with the firm, the title, the criteria and
// the day; every page has the column captions and "strona nr: " with its number at the
// foot; the "Ogółem" row closes the list.
void DrukRaportu(PrintEngine &engine);
// Gives the print engine the report printout under its procedure word "raport".
void registerReportDriver();
