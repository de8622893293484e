"""Where the installation has put the platform's library.

Whoever installs the package for a library outside the system's folders writes its absolute path here.
"""

LIBRARY: str | None = None
