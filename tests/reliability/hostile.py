"""Small files that cost whoever believes them much: deep nesting, unclosed elements, entities, bombs."""
import struct
import zipfile
import zlib


def write_epub_bomb(path, megabytes):
    container = ('<container version="1.0" xmlns="urn:oasis:names:tc:opendocument:xmlns:container"><rootfiles>'
                 '<rootfile full-path="c.opf" media-type="application/oebps-package+xml"/></rootfiles></container>')
    package = ('<package xmlns="http://www.idpf.org/2007/opf" version="2.0"><metadata '
               'xmlns:dc="http://purl.org/dc/elements/1.1/"><dc:title>bomb</dc:title></metadata><manifest>'
               '<item id="a" href="a.html" media-type="application/xhtml+xml"/></manifest>'
               '<spine><itemref idref="a"/></spine></package>')
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as book:
        book.writestr(zipfile.ZipInfo("mimetype"), "application/epub+zip")
        book.writestr("META-INF/container.xml", container)
        book.writestr("c.opf", package)
        with book.open("a.html", "w") as page:
            page.write(b"<html><body><p>The beginning. ")
            for _ in range(megabytes):
                page.write(b"a " * (1 << 19))
            page.write(b"</p></body></html>")


def write_office_bomb(path, megabytes):
    types = ('<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types"><Override '
             'PartName="/word/document.xml" ContentType="application/vnd.openxmlformats-officedocument.'
             'wordprocessingml.document.main+xml"/></Types>')
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as document:
        document.writestr("[Content_Types].xml", types)
        with document.open("word/document.xml", "w") as page:
            page.write(b'<w:document xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main"><w:body>')
            for _ in range(megabytes):
                page.write(b"<w:p><w:r><w:t>words and words</w:t></w:r></w:p>" * (1 << 14))
            page.write(b"</w:body></w:document>")


def write_huge_png(path, side):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    # A thousand empty rows, closed off so that they can be repeated as they stand.
    deflate = zlib.compressobj(9, zlib.DEFLATED, -15)
    rows = deflate.compress(b"\0" * (side * 3 + 1) * 1000) + deflate.flush(zlib.Z_FULL_FLUSH)
    checksum = (side * (side * 3 + 1) % 65521) << 16 | 1
    body = b"\x78\xda" + rows * (side // 1000) + deflate.flush() + struct.pack(">I", checksum)
    head = struct.pack(">IIBBBBB", side, side, 8, 2, 0, 0, 0)
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", body) + chunk(b"IEND", b""))


def lol_feed():
    entities = b"".join(b'<!ENTITY %c "%s">' % (98 + level, b"&%c;" % (97 + level) * 10) for level in range(9))
    return (b'<?xml version="1.0"?><!DOCTYPE r [<!ENTITY a "lol">' + entities
            + b']><rss version="2.0"><channel><title>&j;</title></channel></rss>')


def make_hostile_files(folder):
    folder.mkdir(parents=True, exist_ok=True)
    texts = {
        "deep_div_200k.html": b"<html><body>" + b"<div>" * 200_000 + b"x" + b"</div>" * 200_000,
        "open_script_100k.html": b"<html><body>" + b"<script>a" * 100_000 + b"<p>end",
        "lt_5MB.html": b"<html><body>" + b"<" * 5_000_000,
        "open_quote_5MB.html": b'<html><body><a title="' + b"x>y " * 1_250_000,
        "amp_5MB.html": b"<html><body>" + b"&amp&#x26" * 550_000,
        "open_comment_100k.html": b"<html><body>" + b"<!-- a " * 100_000,
        "lol_feed.xml": lol_feed(),
        "deep_groups.rtf": b"{\\rtf1 The beginning." + b"{\\b " * 200_000,
        "deep_arrays.pdf": b"%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj 2 0 obj" + b"[" * 200_000,
        "deep_list.webarchive": b'<?xml version="1.0"?><plist version="1.0">' + b"<array>" * 200_000,
        "many_parts.eml": b"Subject: many\nContent-Type: multipart/mixed; boundary=b\n\n" + b"--b\n\nx\n" * 100_000,
    }
    for name, data in texts.items():
        (folder / name).write_bytes(data)
    write_epub_bomb(folder / "bomb_1GB.epub", 1024)
    write_office_bomb(folder / "bomb_700MB.docx", 1024)
    write_huge_png(folder / "huge_50000x50000.png", 50_000)
    return folder
