#pragma once

class QString;
struct IScadaView;
struct ScadaSource;

// Hands an outstation's report that came as a text message ("I:", "O:", "B:" and the bits) to the view; any
// other text is ignored.
void PassScadaReport(const QString& text, const ScadaSource& source, IScadaView& view);
