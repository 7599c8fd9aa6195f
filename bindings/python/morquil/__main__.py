"""Shows a device:  python -m morquil [--offered] [ADDRESS [PROPERTY...]]"""

import argparse
import sys
from typing import Iterator, List, Optional

from . import Device, Error, properties
from ._offer import Offer
from ._range import Range


def _text(value: object) -> str:
    return str(value).lower() if isinstance(value, bool) else str(value)


def _offer(offer: Offer) -> str:
    return str(offer) if isinstance(offer, Range) else ", ".join(offer or ())


def lines(device: Device, patterns: List[str], is_offered: bool) -> Iterator[str]:
    """One line for each property that is known."""
    values = {name: value for pattern in patterns for name, value in device.values(pattern).items()}
    width = max((len(name) for name in values), default=0)
    for name, value in values.items():
        offer = _offer(device.offered(name)) if is_offered else ""
        yield f"{name:{width}}  {_text(value)}" + (f"  ({offer})" if offer else "")


def main(arguments: Optional[List[str]] = None) -> int:
    """Returns the exit status."""
    parser = argparse.ArgumentParser(prog="python -m morquil", description="Shows a device.")
    parser.add_argument("address", nargs="?", default="127.0.0.1", help="a host name or an address")
    parser.add_argument("property", nargs="*", help="a name, its part before a point, or a name with * and ?")
    parser.add_argument("--offered", action="store_true", help="also what the device accepts now")
    options = parser.parse_args(arguments)
    patterns = options.property or ["*"]
    try:
        for pattern in patterns:
            properties(pattern)
        with Device.connect(options.address) as device:
            for line in lines(device, patterns, options.offered):
                print(line)
    except Error as error:
        print(f"morquil: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
