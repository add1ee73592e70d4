"""The applications that tools/compatibility tries, how each is opened, and why what is missing of one is."""
from dataclasses import dataclass, field

NO_TIP_OF_THE_DAY = {"config/libreoffice/4/user/registrymodifications.xcu": """<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry"><item oor:path="/org.openoffice.Office.Common/Misc">
<prop oor:name="ShowTipOfTheDay" oor:op="fuse"><value>false</value></prop></item></oor:items>
"""}
# Why something is missing, where several share the reason.
AS_TABS = "what it is handed while it runs becomes a tab of its window; "
AS_TABS_ALL_THE_SAME = AS_TABS + "it would do so even after its menu entry's action for a new window"
AS_TABS_WITHOUT = AS_TABS + "its menu entry has no action for a new window"
TAB_BEHIND = "a tab behind the one in front is named by nothing that can be read: no title, no open file"
FIRST_ONLY = ("one process with the first one on its command line; of the other the title has the bare name only, and {}: "
              "its window comes back without it")
NOT_KEPT_OPEN = FIRST_ONLY.format("no file is kept open")
NO_ENTRY = FIRST_ONLY.format("accessibility shows no entry with the folder's path")

NO_QUESTION = {"config/qterminal.org/qterminal.ini": "[General]\nAskOnExit=false\n"}


@dataclass(frozen=True)
class Application:
    """`command` opens one window: "{}" stands for its document or folder. `opens` is the ending of its documents, "/" for
    folders, "shell" for a terminal's folder, in which it is started where no "{}" is; empty for nothing at all. Where
    there are `tabs`, all documents are opened at once in one window, and these keys lead to its next tab."""
    name: str
    command: str
    opens: str = ""
    windows: int = 2
    tabs: str = ""
    package: str = ""
    settings: dict = field(default_factory=dict)  # files in its home
    launcher: str = ""  # the application's identifier: what it has no menu entry for is registered
    missing: str = ""  # why something is: printed only where something is


APPLICATIONS = (
    Application("xterm", "xterm", "shell"),
    Application("rxvt-unicode", "urxvt", "shell", package="rxvt-unicode"),
    Application("st", "stterm", "shell", package="stterm"),
    Application("xfce4-terminal", "xfce4-terminal --working-directory={}", "shell"),
    Application("gnome-terminal", "gnome-terminal --working-directory={}", "shell"),
    Application("mate-terminal", "mate-terminal --working-directory={}", "shell"),
    Application("lxterminal", "lxterminal --working-directory={}", "shell"),
    Application("sakura", "sakura -d {}", "shell"),
    Application("konsole", "konsole --workdir {}", "shell"),
    Application("qterminal", "qterminal --workdir {}", "shell", settings=NO_QUESTION),
    Application("thunar", "thunar {}", "/"),
    Application("pcmanfm", "pcmanfm --new-win {}", "/", missing=NO_ENTRY),
    Application("nautilus", "nautilus --new-window {}", "/", windows=1),
    Application("caja", "caja --no-desktop {}", "/"),
    Application("nemo", "nemo {}", "/", missing=NO_ENTRY),
    Application("dolphin", "dolphin --new-window {}", "/"),
    Application("pcmanfm-qt", "pcmanfm-qt {}", "/", missing=NO_ENTRY),
    Application("mousepad", "mousepad {}", "txt"),
    Application("geany", "geany {}", "txt", tabs="ctrl+Next"),
    Application("gedit", "gedit --new-window {}", "txt"),
    Application("gedit, tabs", "gedit {}", "txt", tabs="ctrl+alt+Next", package="gedit", missing=TAB_BEHIND),
    Application("gnome-text-editor", "gnome-text-editor --new-window {}", "txt", missing=AS_TABS_WITHOUT),
    Application("pluma", "pluma --new-window {}", "txt", missing=AS_TABS_WITHOUT),
    Application("kate", "kate --new {}", "txt", missing=AS_TABS_WITHOUT),
    Application("kate, tabs", "kate {}", "txt", tabs="ctrl+Tab", package="kate", missing=TAB_BEHIND),
    Application("featherpad", "featherpad --win {}", "txt", missing=AS_TABS_ALL_THE_SAME),
    Application("l3afpad", "l3afpad {}", "txt"),
    Application("emacs", "emacs {}", "txt", package="emacs-gtk"),
    Application("gvim", "gvim {}", "txt", package="vim-gtk3"),
    Application("evince", "evince {}", "pdf"),
    Application("atril", "atril {}", "pdf"),
    Application("okular", "okular {}", "pdf"),
    Application("xpdf", "xpdf {}", "pdf"),
    Application("zathura", "zathura {}", "pdf", package="zathura zathura-pdf-poppler"),
    Application("qpdfview", "qpdfview {}", "pdf", windows=1, package="qpdfview qpdfview-pdf-poppler-plugin"),
    Application("mupdf", "mupdf {}", "pdf"),
    Application("libreoffice writer", "libreoffice --writer {}", "odt", package="libreoffice-writer libreoffice-gtk3",
                settings=NO_TIP_OF_THE_DAY),
    Application("libreoffice calc", "libreoffice --calc {}", "ods", package="libreoffice-calc libreoffice-gtk3",
                settings=NO_TIP_OF_THE_DAY),
    Application("gnumeric", "gnumeric {}", "ods"),
    Application("abiword", "abiword {}", "abw"),
    Application("inkscape", "inkscape {}", "svg", missing=NOT_KEPT_OPEN),
    Application("gimp", "gimp --no-splash {}", "png", windows=1),
    Application("eog", "eog {}", "png", missing=NOT_KEPT_OPEN),
    Application("ristretto", "ristretto {}", "png"),
    Application("gpicview", "gpicview {}", "png"),
    Application("viewnior", "viewnior {}", "png"),
    Application("gwenview", "gwenview {}", "png"),
    Application("galculator", "galculator", windows=1),
    Application("gnome-calculator", "gnome-calculator", windows=1,
                missing="it asks for more height than it had, once it runs again, and takes no less; told as adjusted"),
    Application("kcalc", "kcalc", windows=1),
    Application("xclock", "xclock", windows=1, package="x11-apps",
                missing="it has no menu entry; registered by quilloctl launcher add it comes back, as xcalc does"),
    Application("xcalc, launcher added", "xcalc", windows=1, launcher="xcalc", package="x11-apps"),
)
TERMINALS = "seven terminals"
TOGETHER = {TERMINALS: ("xterm", "xterm", "xfce4-terminal", "xfce4-terminal", "gnome-terminal", "konsole", "qterminal")}
