"""What became of changes."""

from typing import NamedTuple

__all__ = ["Outcome"]


class Outcome(NamedTuple):
    """What became of the changes of one call, in messages: changes to the same block that wait together are one."""

    #: What the device has answered.
    acknowledged: int = 0
    refused: int = 0
    #: What is never sent to a device.
    kept: int = 0
    #: What the device has reported since: the values that were set, or at least one other.
    confirmed: int = 0
    adjusted: int = 0
    #: When the connection has ended: sent and possibly carried out, and not sent.
    unanswered: int = 0
    unsent: int = 0

    @property
    def is_applied(self) -> bool:
        """Whether the device reports exactly what was set. If not, it has limited or rounded a value, or the value was
        changed elsewhere since: read it."""
        return self.refused == self.kept == self.adjusted == self.unanswered == self.unsent == 0
