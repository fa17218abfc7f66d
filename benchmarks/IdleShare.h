#pragma once

#include <string>

/// The share of a core in per cent that a console of its own takes over 60 s while it shows a section.
double IdleShareOf(const std::string& section);
