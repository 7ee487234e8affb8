#pragma once

#include "addressing/AddressingError.h"
#include "addressing/FleetConfig.h"
#include "addressing/RadioAddress.h"
#include "addressing/RadioNumbering.h"

#include <string>
#include <vector>

// Converts between what people dial and MPT1327 addresses under one numbering. Texts are UTF-8.
//
// For every valid address a, DialToAddress(AddressToDial(a)) and DialToAddress(ShortDial(a)) give a back,
// as long as configuration and own numbering do not change in between.
class MptAddressing {
public:
    virtual ~MptAddressing() = default;

    // The code that CreateAddressing() was given.
    virtual std::string NumberingCode() const = 0;
    // Catalogue id of the numbering's name.
    virtual int NumberingNameTextId() const = 0;

    // Reads the configuration of this numbering; the sources are not kept. Whatever a source throws is passed
    // on. The old configuration is gone then, and numbers are converted as if there had been none.
    virtual void SetConfigSource(IMpt1343FleetConfigSource& fleets, IActionetConfigSource& actionet) = 0;

    // Takes what the radio reported about itself. Its contents never make it throw: what cannot be used is
    // left out, and Warnings() says so.
    virtual void SetRadioNumbering(const RadioNumbering& numbering) = 0;

    // What is doubtful about the present configuration and the radio's own numbering, for the log; empty when
    // all is well.
    virtual std::vector<AddressingError> Warnings() const = 0;

    // Throws AddressingError on text that is not a number.
    virtual RadioAddress DialToAddress(const std::string& dial) const = 0;

    // The one canonical text of an address: full number, else telephone form, else raw ("/" prefix ident).
    // Throws AddressingError on an invalid address.
    virtual std::string AddressToDial(const RadioAddress& address) const = 0;

    // The shortest text that reaches the address from this radio. Throws like AddressToDial().
    virtual std::string ShortDial(const RadioAddress& address) const = 0;
};
