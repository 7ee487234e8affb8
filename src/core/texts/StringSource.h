#pragma once

#include <QString>

// Every text that a person reads is a numbered entry of the catalogue.
struct IStringSource {
    virtual ~IStringSource() = default;

    // The text of an id. Raises Error for an id that is in no catalogue.
    virtual QString LoadString(int id) const = 0;
};
