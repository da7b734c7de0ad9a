#pragma once

#include <cstdint>

class TemplateDialog;

// Lets the user draw a dialog of lists and long texts larger: never smaller than its template. Does nothing for
// templates whose parts have their size from what they show.
void MakeSizable(TemplateDialog& dialog, int32_t nTemplate);
