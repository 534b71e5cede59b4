import os

from vbn import Analysis

def page(analysis: Analysis, input_text: str = "") -> str: ...
def write(
    analysis: Analysis,
    path: str | os.PathLike[str] = "report.html",
    input_text: str = "",
    pictures: bool = False,
    viewer_files: bool = False,
) -> list[str]: ...
