import os

from vbn import Analysis, Spectrum

def page(analysis: Analysis, input_text: str = "", spectrum: Spectrum | None = None) -> str: ...
def write(
    analysis: Analysis,
    path: str | os.PathLike[str] = "report.html",
    input_text: str = "",
    pictures: bool = False,
    viewer_files: bool = False,
    spectrum: Spectrum | None = None,
) -> list[str]: ...
