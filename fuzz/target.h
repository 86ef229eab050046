#pragma once

#include <cstddef>
#include <cstdint>

// One input of a target; 0. What is wrong ends the program.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
