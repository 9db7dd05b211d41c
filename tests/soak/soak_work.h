#pragma once
// The child of the soak: real work on the plan until it is killed, each step inside one
// update bracket, with a journal line before the bracket ("begin N digest"), once its
// writes are done but before they are committed ("expect N digest"), and after it
// ("done N"), so that whoever reads the plan afterwards knows what it may hold.

#include <QString>

namespace soak {

// A sample plan of `plots` plots written in `folder`; its path.
QString makePlan(const QString& folder, int plots);

// Works on the plan until killed; returns only when the plan cannot be opened.
int work(const QString& plan, const QString& journal, const QString& folder, quint32 seed);

} // namespace soak
