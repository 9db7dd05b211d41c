#pragma once
// What the parent of the soak checks after each kill.

#include <QString>

namespace soak {

struct Verdict {
    bool integrity = true;  // SQLite's own check of the file
    bool complete = true;   // the open bracket is all or nothing
    bool invariants = true; // R-trees agree with their tables; one number label per plot
};

struct Tally {
    int integrity = 0, halfWritten = 0, invariants = 0;
    void add(const Verdict& v) {
        integrity += v.integrity ? 0 : 1;
        halfWritten += v.complete ? 0 : 1;
        invariants += v.invariants ? 0 : 1;
    }
    bool clean() const { return integrity == 0 && halfWritten == 0 && invariants == 0; }
};

// Checks the plan against the journal the killed child left; reasons go to stderr.
Verdict check(const QString& plan, const QString& journal);

int plotCount(const QString& plan);

} // namespace soak
