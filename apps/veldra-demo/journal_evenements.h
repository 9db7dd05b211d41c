#pragma once
// The host's log of the control's thirteen events. Each arrival appends one timestamped
// line with the event's name and arguments; the log only reads them, so a host slot
// connected after it sees the same values the control sent.

class QPlainTextEdit;
class QTableView;

namespace veldra {
class Veldra;
}

namespace veldra::demo {

// Logs every event of `plan` into `journal` for as long as `journal` lives.
void brancheJournal(Veldra& plan, QPlainTextEdit& journal);

// A click on a line of `journal` shows its event's arguments in full in `texte` and the
// record set it carried, as the control sent it, in `table`.
void brancheDetails(QPlainTextEdit& journal, QTableView& table, QPlainTextEdit& texte);

} // namespace veldra::demo
