#pragma once

class PrintEngine;

// The page a printer is calibrated with: a millimetre grid over the whole sheet, numbered
// every centimetre from the paper's corner, and the value rows of the transfer form's
// first part where the values would print on a pre-printed form. Laid over a red form
// against the light, it shows how far the printer's output stands off.
// The driver of the procedure word "kalibracja".
void DrukKalibracji(PrintEngine &engine);
