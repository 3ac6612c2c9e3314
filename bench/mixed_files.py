#!/usr/bin/env python3
"""bench/mixed_files.py FOLDER: about 450 files of the kinds that people keep, once: pages, pictures, manuals, fonts
and sources of installed Debian packages, and documents, mail, sound and film that are made here. The same on every
machine with the same packages."""
import email.message
import pathlib
import random
import shutil
import subprocess
import sys
import tarfile
import zipfile

folder = pathlib.Path(sys.argv[1])
chance = random.Random(1)
words = (pathlib.Path("/usr/share/common-licenses/GPL-3").read_text()).split()
repository = pathlib.Path(__file__).parent.parent


def prose(count):
    start = chance.randrange(len(words) - count) if count < len(words) else 0
    return " ".join(words[start:start + count])


def name(kind, number):
    return folder / f"{kind}-{number:03}.{kind}"


def take(kind, count, roots, most=2_000_000):
    """Copies `count` files spread over what the packages have."""
    found = [path for root in roots for path in sorted(pathlib.Path(root).rglob(f"*.{kind}"))
             if path.is_file() and not path.is_symlink() and 200 < path.stat().st_size < most]
    step = max(1, len(found) // count)
    for number, path in enumerate(found[::step][:count]):
        shutil.copyfile(path, name(kind, number))


def package(path, parts):
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        for part, text in parts.items():
            archive.writestr(zipfile.ZipInfo(part), text)


def core(number):
    return (f"<c xmlns:dc='d' xmlns:t='t'><dc:title>Report {number}</dc:title><dc:creator>Ada</dc:creator>"
            "<t:created>2026-03-01T09:30:00Z</t:created></c>")


def documents(number):
    text = [prose(chance.randrange(20, 200)) for _ in range(30)]
    runs = "".join(f"<w:p><w:r><w:t>{line}</w:t></w:r></w:p>" for line in map(escaped, text))
    package(name("docx", number), {"[Content_Types].xml": "<Types xmlns='http://schemas.openxmlformats.org/package/2006/content-types'/>",
                                   "docProps/core.xml": core(number),
                                   "word/document.xml": f"<w:document xmlns:w='w'><w:body>{runs}</w:body></w:document>"})
    rows = "".join(f"<row><c><v>{chance.random()}</v></c><c t='inlineStr'><is><t>{escaped(prose(4))}</t></is></c></row>"
                   for _ in range(200))
    package(name("xlsx", number), {"docProps/core.xml": core(number),
                                   "xl/workbook.xml": "<w xmlns:r='r'><sheet name='One' r:id='R1'/></w>",
                                   "xl/_rels/workbook.xml.rels": "<x><Relationship Id='R1' Target='s.xml'/></x>",
                                   "xl/s.xml": f"<x>{rows}</x>"})
    paragraphs = "".join(f"<text:p>{escaped(line)}</text:p>" for line in text)
    head = "<office:d xmlns:office='o' xmlns:text='t' xmlns:dc='d'>"
    package(name("odt", number), {"mimetype": "application/vnd.oasis.opendocument.text",
                                  "meta.xml": f"{head}<dc:title>Report {number}</dc:title></office:d>",
                                  "content.xml": f"{head}<office:body>{paragraphs}</office:body></office:d>"})


def escaped(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")


def mail(number):
    message = email.message.EmailMessage()
    message["From"], message["To"] = "Ada <ada@example.org>", "Charles <c@example.org>"
    message["Subject"], message["Date"] = prose(6), "Sun, 01 Mar 2026 09:30:00 +0000"
    message.set_content(prose(300))
    message.add_alternative(f"<p>{escaped(prose(300))}</p>", subtype="html")
    if number % 3 == 0:
        message.add_attachment(bytes(chance.randbytes(20_000)), maintype="image", subtype="png", filename="a.png")
    name("eml", number).write_bytes(bytes(message))


def film(number):
    def make(path, *arguments):
        subprocess.run(["ffmpeg", "-v", "error", "-y", *arguments, "-metadata", f"title=Piece {number}",
                        "-metadata", "artist=Ada", str(path)], check=True)
    tone = ["-f", "lavfi", "-i", f"sine=frequency={200 + 20 * number}:duration=3"]
    picture = ["-f", "lavfi", "-i", "testsrc=duration=2:size=320x240:rate=10"]
    for kind in "mp3", "flac", "ogg":
        make(name(kind, number), *tone)
    for kind in "mp4", "mkv":
        make(name(kind, number), *picture, *tone)
    make(name("jpg", number), *picture, "-frames:v", "1", "-s", f"{1600 + number}x1200")


def small(number):
    name("vcf", number).write_text(f"BEGIN:VCARD\nVERSION:3.0\nFN:Person {number}\nEMAIL:p{number}@example.org\nEND:VCARD\n")
    name("ics", number).write_text(f"BEGIN:VCALENDAR\nBEGIN:VEVENT\nSUMMARY:{prose(4)}\nDTSTART:20260301T093000Z\n"
                                   "END:VEVENT\nEND:VCALENDAR\n")
    name("md", number).write_text(f"---\ntitle: Note {number}\n---\n" + prose(400))
    name("txt", number).write_text(prose(1000))
    name("rtf", number).write_text("{\\rtf1\\ansi{\\info{\\title Note}}" + "\\par ".join(prose(60) for _ in range(10)) + "}")
    with tarfile.open(folder / f"tar-{number:03}.tar.gz", "w:gz") as archive:
        for path in sorted(folder.glob("*.txt"))[:10]:
            archive.add(path, path.name)


if not folder.is_dir():
    folder.mkdir(parents=True)
    take("html", 40, ["/usr/share/doc"])
    take("pdf", 20, ["/usr/share/doc", "/usr/share/developers-reference", "/usr/share/pari"])
    take("png", 40, ["/usr/share"])
    take("svg", 20, ["/usr/share"])
    take("py", 25, ["/usr/lib/python3"])
    take("h", 15, ["/usr/include"])
    take("ttf", 10, ["/usr/share/fonts"])
    take("t1", 5, ["/usr/share/fonts"])
    take("eps", 10, ["/usr/share"])
    take("epub", 5, [repository / "tests/data"])
    for number in range(12):
        film(number)
    for number in range(20):
        documents(number)
        small(number)
    for number in range(30):
        mail(number)
print(*sorted(folder.iterdir()), sep="\n")
