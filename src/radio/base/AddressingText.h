#pragma once

#include <exception>

class Error;
class AddressingError;
struct IStringSource;

// The sentence of an addressing failure, from the catalogue.
Error AddressingFailure(const AddressingError& failure, const IStringSource& strings);
