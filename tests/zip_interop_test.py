#!/usr/bin/env python3
"""Export files against other zip tools: an exported configuration passes Info-ZIP's
`unzip -t` and Python's zipfile and imports on a fresh user directory, an archive made by
Info-ZIP's `zip` imports, and a compression bomb made by zipfile is refused without a
trace. Usage: LOOMSIM SCRATCH_DIR"""
import pathlib, re, shutil, subprocess, sys, zipfile

loomsim, scratch = sys.argv[1], pathlib.Path(sys.argv[2])
shutil.rmtree(scratch, ignore_errors=True)
scratch.mkdir(parents=True)

SHEET = """prop loom.driver.name = "KESTREL C750"
device customisation/OutputPDL = "PS"
doc others <<XUL
<window id="others"><vbox id="vars"/><label id="err_Export"/><label id="err_Import"/></window>
XUL
"""


def run(name, text, keep=False):
    path = scratch / name
    path.write_text(text)
    args = [loomsim, "run"] + (["--keep"] if keep else ["--quiet"]) + [str(path)]
    result = subprocess.run(args, capture_output=True, text=True)
    assert result.returncode == 0, result.stdout + result.stderr
    return result.stdout


# 1. Export, then check the file with unzip -t and zipfile.
out = run("export.scn", SHEET + """archive driver:"ui.zip" member "Zuconf.xml" <<END
<settings/>
END
archive driver:"ui.zip" member "pages/basic.xul" <<END
<window id="basic"/>
END
uiarchive driver:"ui.zip"
user TEMPLATE/TEMPLATE_BUTTON_1 = "Draft"
user IMAGE_QUALITY/setting_gamma = "1.8"
user TAB_BASIC/Copies = "3"
filedialog user:"conf"
call impexpbut.SaveSettingsForExport(document)
expect #err_Export.value == "false"
""", keep=True)
kept = pathlib.Path(re.search(r"kept the directory tree of .* in (\S+)", out).group(1))
exported = kept / "user" / "conf.cfp"
test = subprocess.run(["unzip", "-t", str(exported)], capture_output=True, text=True)
assert test.returncode == 0 and "No errors detected" in test.stdout, test.stdout
with zipfile.ZipFile(exported) as archive:
    assert archive.testzip() is None
    names = set(archive.namelist())
    assert {"Zuconf_export.xml", "pages/basic.xul"} <= names and "Zuconf.xml" not in names, names
    settings = archive.read("Zuconf_export.xml").decode()
    assert "TEMPLATE_BUTTON_1" in settings and "TAB_BASIC" not in settings, settings
shutil.copy(exported, scratch / "exported.cfp")
shutil.rmtree(kept)

# 2. The export imported on a fresh user directory gives the same templates and image
# quality.
run("reimport.scn", SHEET + f"""filedialog "{scratch / 'exported.cfp'}"
call impexpbut.LoadSettingsForImport(document)
call impexpbut.setConfirmedOK(document)
expect #err_Import.value == "false"
expect user TEMPLATE/TEMPLATE_BUTTON_1 == "Draft"
expect user IMAGE_QUALITY/setting_gamma == "1.8"
expect user TAB_BASIC absent
expect file user:"pages/basic.xul" exists
""")

# 3. An archive made by Info-ZIP's zip imports.
source = scratch / "made_by_zip"
(source / "images").mkdir(parents=True)
(source / "Zuconf_export.xml").write_text(
    '<settings><item key="TEMPLATE"><item key="TEMPLATE_BUTTON_3" value="Booklet"/></item>'
    '<item key="IMAGE_QUALITY"><item key="setting_gamma" value="2.2"/></item></settings>')
(source / "images" / "logo.txt").write_text("logo")
subprocess.run(["zip", "-q", "-r", str(scratch / "zip.cfp"), "."], cwd=source, check=True)
run("import.scn", SHEET + f"""filedialog "{scratch / 'zip.cfp'}"
call impexpbut.LoadSettingsForImport(document)
expect dialog "Zuhdlg_confirmImport.xul" title "$IDS_DLG_IMPORT;"
call impexpbut.setConfirmedOK(document)
expect #err_Import.value == "false"
expect user TEMPLATE/TEMPLATE_BUTTON_3 == "Booklet"
expect user IMAGE_QUALITY/setting_gamma == "2.2"
expect file user:"images/logo.txt" contains "logo"
expect file user:"Zuconf_export.xml" absent
""")

# 4. A member compressed far beyond 100:1 is refused and changes nothing.
with zipfile.ZipFile(scratch / "bomb.cfp", "w", zipfile.ZIP_DEFLATED) as archive:
    archive.writestr("Zuconf_export.xml", "<settings/>")
    archive.writestr("zeros.bin", bytes(4 * 1024 * 1024))
run("bomb.scn", SHEET + f"""user TEMPLATE/TEMPLATE_BUTTON_1 = "Draft"
filedialog "{scratch / 'bomb.cfp'}"
call impexpbut.LoadSettingsForImport(document)
call impexpbut.setConfirmedOK(document)
expect #err_Import.value == "true"
expect user TEMPLATE/TEMPLATE_BUTTON_1 == "Draft"
expect file user:"zeros.bin" absent
""")
shutil.rmtree(scratch)
print("zip interop: export checked by unzip -t and zipfile, zip's archive imported, bomb refused")
