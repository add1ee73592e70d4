"""Small documents that real applications take for their own, by ending: tools/compatibility has them opened."""
import struct
import zipfile
import zlib

ODF = "application/vnd.oasis.opendocument."
NAMESPACES = " ".join(f'xmlns:{name}="urn:oasis:names:tc:opendocument:xmlns:{name}:1.0"'
                      for name in ("office", "text", "table", "manifest"))


def write(path):
    MAKERS[path.rsplit(".", 1)[1]](path)


def plain(path):
    with open(path, "w", encoding="utf-8") as file:
        file.write("Dear reader\n")


def pdf(path):
    text = b"BT /F 24 Tf 40 300 Td (Dear reader) Tj ET"
    objects = [b"<< /Type /Catalog /Pages 2 0 R >>", b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
               b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 300 400] /Contents 5 0 R "
               b"/Resources << /Font << /F 4 0 R >> >> >>",
               b"<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
               b"<< /Length %d >>\nstream\n%s\nendstream" % (len(text), text)]
    out, offsets = b"%PDF-1.4\n", []
    for number, body in enumerate(objects, 1):
        offsets.append(len(out))
        out += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    table = b"".join(b"%010d 00000 n \n" % offset for offset in offsets)
    count = len(objects) + 1
    with open(path, "wb") as file:
        file.write(out + b"xref\n0 %d\n0000000000 65535 f \n%s" % (count, table)
                   + b"trailer\n<< /Size %d /Root 1 0 R >>\nstartxref\n%d\n%%%%EOF\n" % (count, len(out)))


def png(path, width=200, height=150):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = (b"\0" + bytes((x, y, 128)[i] for x in range(width) for i in range(3)) for y in range(height))
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
                   + chunk(b"IDAT", zlib.compress(b"".join(rows))) + chunk(b"IEND", b""))


def svg(path):
    with open(path, "w", encoding="utf-8") as file:
        file.write('<svg xmlns="http://www.w3.org/2000/svg" width="200" height="150">'
                   '<rect width="100" height="80" fill="teal"/></svg>\n')


def abw(path):
    with open(path, "w", encoding="utf-8") as file:
        file.write('<?xml version="1.0" encoding="UTF-8"?>\n<abiword xmlns="http://www.abisource.com/awml.dtd">'
                   "<section><p>Dear reader</p></section></abiword>\n")


def odf(kind, body):
    """A maker of OpenDocument packages: their type comes first, as it is."""
    def make(path):
        with zipfile.ZipFile(path, "w") as package:
            package.writestr("mimetype", ODF + kind)
            package.writestr("META-INF/manifest.xml", (
                f'<manifest:manifest {NAMESPACES}>'
                f'<manifest:file-entry manifest:full-path="/" manifest:media-type="{ODF}{kind}"/>'
                '<manifest:file-entry manifest:full-path="content.xml" manifest:media-type="text/xml"/>'
                "</manifest:manifest>"))
            package.writestr("content.xml", (
                f'<office:document-content {NAMESPACES} office:version="1.2"><office:body>{body}</office:body>'
                "</office:document-content>"))
    return make


CELL = "<text:p>Dear reader</text:p>"
MAKERS = {
    "txt": plain, "pdf": pdf, "png": png, "svg": svg, "abw": abw,
    "odt": odf("text", f"<office:text>{CELL}</office:text>"),
    "ods": odf("spreadsheet", '<office:spreadsheet><table:table table:name="Sheet1"><table:table-row>'
               f'<table:table-cell office:value-type="string">{CELL}</table:table-cell></table:table-row>'
               "</table:table></office:spreadsheet>"),
}
