#pragma once

#include <exception>

class Error;
class AddressingError;
struct IStringSource;

// The catalogue's sentence for an addressing failure.
Error AddressingFailure(const AddressingError& failure, const IStringSource& strings);
