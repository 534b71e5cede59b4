"""python3 -m vbn.report does what vbn-report does."""
import sys

from vbn.report.command import main

sys.exit(main())
