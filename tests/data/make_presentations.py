#!/usr/bin/env python3
"""Makes the presentations of the converter's tests beside itself: needs LibreOffice Impress.

Each slide has a coloured quarter at its upper left (red, green, blue) and stays 2, 3 and 4 seconds.
"""
import pathlib
import re
import subprocess
import tempfile
import zipfile

HERE = pathlib.Path(__file__).resolve().parent
COLOURS = ['#ff0000', '#00ff00', '#0000ff']
NAMESPACES = {
    'office': 'office', 'style': 'style', 'text': 'text', 'draw': 'drawing', 'fo': 'xsl-fo-compatible',
    'svg': 'svg-compatible', 'presentation': 'presentation'}


def flat_presentation():
    spaces = ' '.join(f'xmlns:{name}="urn:oasis:names:tc:opendocument:xmlns:{path}:1.0"'
                      for name, path in NAMESPACES.items())
    styles = ''
    pages = ''
    for i, colour in enumerate(COLOURS):
        styles += (f'<style:style style:name="p{i}" style:family="drawing-page"><style:drawing-page-properties '
                   f'presentation:transition-type="automatic" presentation:duration="PT00H00M0{i + 2}S"/>'
                   f'</style:style><style:style style:name="g{i}" style:family="graphic">'
                   f'<style:graphic-properties draw:fill="solid" draw:fill-color="{colour}" draw:stroke="none"/>'
                   '</style:style>')
        pages += (f'<draw:page draw:name="page{i}" draw:style-name="p{i}" draw:master-page-name="Default">'
                  f'<draw:rect draw:style-name="g{i}" svg:x="0cm" svg:y="0cm" svg:width="14cm" '
                  'svg:height="7.875cm"/></draw:page>')
    return (f'<?xml version="1.0" encoding="UTF-8"?><office:document {spaces} office:version="1.2" '
            'office:mimetype="application/vnd.oasis.opendocument.presentation"><office:automatic-styles>'
            '<style:page-layout style:name="PM1"><style:page-layout-properties fo:margin="0cm" '
            f'fo:page-width="28cm" fo:page-height="15.75cm"/></style:page-layout>{styles}'
            '</office:automatic-styles><office:master-styles><style:master-page style:name="Default" '
            'style:page-layout-name="PM1"/></office:master-styles><office:body><office:presentation>'
            f'{pages}</office:presentation></office:body></office:document>')


def without_slides(source, target):
    with zipfile.ZipFile(source) as archive, zipfile.ZipFile(target, 'w', zipfile.ZIP_DEFLATED) as result:
        for name in archive.namelist():
            data = archive.read(name)
            if name.startswith(('ppt/slides/', 'ppt/notesSlides')):
                continue
            if name == 'ppt/presentation.xml':
                data = re.sub(rb'<p:sldIdLst>.*?</p:sldIdLst>', b'', data)
            if name == 'ppt/_rels/presentation.xml.rels':
                data = re.sub(rb'<Relationship [^>]*slides/[^>]*/>', b'', data)
            if name == '[Content_Types].xml':
                data = re.sub(rb'<Override PartName="/ppt/(slides|notesSlides)/[^>]*/>', b'', data)
            result.writestr(name, data)


def with_hidden_slide(source, target, number):
    with zipfile.ZipFile(source) as archive, zipfile.ZipFile(target, 'w', zipfile.ZIP_DEFLATED) as result:
        for name in archive.namelist():
            data = archive.read(name)
            if name == f'ppt/slides/slide{number}.xml':
                data = data.replace(b'<p:sld ', b'<p:sld show="0" ')
            result.writestr(name, data)


def locked(target):
    """An OpenDocument file whose manifest says that its content is enciphered."""
    mimetype = 'application/vnd.oasis.opendocument.presentation'
    secret = bytes((i * 37 + 11) % 256 for i in range(512))
    manifest = (
        '<?xml version="1.0" encoding="UTF-8"?><manifest:manifest manifest:version="1.2" '
        'xmlns:manifest="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0">'
        f'<manifest:file-entry manifest:full-path="/" manifest:version="1.2" manifest:media-type="{mimetype}"/>'
        '<manifest:file-entry manifest:full-path="content.xml" manifest:media-type="text/xml" '
        'manifest:size="2048"><manifest:encryption-data manifest:checksum-type="SHA1/1K" '
        'manifest:checksum="AAAAAAAAAAAAAAAAAAAAAAAAAAA="><manifest:algorithm '
        'manifest:algorithm-name="Blowfish CFB" manifest:initialisation-vector="AAAAAAAAAAA="/>'
        '<manifest:key-derivation manifest:key-derivation-name="PBKDF2" manifest:key-size="16" '
        'manifest:iteration-count="1024" manifest:salt="AAAAAAAAAAAAAAAAAAAAAA=="/></manifest:encryption-data>'
        '</manifest:file-entry></manifest:manifest>')
    with zipfile.ZipFile(target, 'w') as archive:
        archive.writestr('mimetype', mimetype)
        archive.writestr('content.xml', secret)
        archive.writestr('META-INF/manifest.xml', manifest)


def main():
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / 'slides.fodp'
        source.write_text(flat_presentation(), encoding='utf-8')
        for suffix in ('odp', 'pptx', 'ppt'):
            subprocess.run(['soffice', f'-env:UserInstallation=file://{folder}/profile', '--headless',
                            '--convert-to', suffix, '--outdir', HERE, source], check=True)
    without_slides(HERE / 'slides.pptx', HERE / 'noslides.pptx')
    with_hidden_slide(HERE / 'slides.pptx', HERE / 'hidden.pptx', 2)
    locked(HERE / 'locked.odp')


if __name__ == '__main__':
    main()
