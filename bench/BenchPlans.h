#pragma once

#include <string>

/// Plans to measure on, as the text of a .vta file. The same arguments give the same plan everywhere.

/// `tasks` effort tasks of 8 to 80 whole hours, each with one resource at 8 hours Monday to Friday, in layers
/// of as many tasks as there are resources (5 at least). A task has one or two finish-to-start predecessors,
/// most of them in the layer before; one closing task without work waits for all open ends.
std::string SimplePlan(int tasks, int resources, unsigned seed);

/// A master project with two subprojects. Two resources a task, one dependency in five from one percentage to
/// another, offsets, one task in ten on calendar time, several shifts.
std::string RichPlan(int tasks, int resources, unsigned seed);
