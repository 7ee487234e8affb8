#pragma once

#include <QWidget>

class QTreeView;
struct IStringSource;

// "picIndividuals": the list of individual radios, with its three columns.
class IndividualsPane : public QWidget {
    Q_OBJECT

public:
    IndividualsPane(const IStringSource& strings, QWidget* parent);

    // Sizes the columns to contents and headers.
    void SizeColumns();

private:
    QTreeView* lvIndividuals;
};
