#pragma once

class QWidget;
struct IStringSource;

// Fills a window's texts from the catalogue: every widget, action and the window itself that carries the
// dynamic property "textId" gets that text as caption or text, "toolTipId" as tool tip, "accessibleNameId" as
// accessible name, "placeholderId" as placeholder. Raises Error for an id that is in no catalogue.
void LoadCaptions(QWidget& window, const IStringSource& strings);

// Names lists, boxes with a list and the fields in these after their labels, as an aid for the blind is told
// of them; Qt leaves this out. LoadCaptions does it, too.
void NameLists(QWidget& window);
