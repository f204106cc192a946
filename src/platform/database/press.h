#pragma once

namespace kovanix {

class Connection;
struct ConnectionCore;

/// The statements that belong to one press of a key: a sale, a save.
///
/// They run one by one, each on its own and never as a transaction, but they become durable together: once
/// finish has returned, all of them outlast a power cut. A press that is left by a failure is finished on the
/// way out, so that a box that tells of the failure never stands in front of rows that could still be lost.
/// A press within another one leaves the finish to the outer one. The connection must outlive the press.
class Press {
public:
    /// Looks first whether the file that is open is still the one at its path. Where another has taken its
    /// place, all connections of this process to it leave the old file and open the one that is there now;
    /// recordsets that are open on them are closed with that.
    /// @throws DatabaseError where no file is at that path any more (missing), or the one there can't be
    /// opened
    explicit Press(Connection& connection);
    ~Press();
    Press(const Press&) = delete;
    Press& operator=(const Press&) = delete;

    /// Makes the statements durable; a second call does nothing.
    /// @throws DatabaseError when that fails: the rows are stored then, but a power cut may take them
    void finish();

private:
    ConnectionCore* m_core;  // nothing once finished
};

}  // namespace kovanix
