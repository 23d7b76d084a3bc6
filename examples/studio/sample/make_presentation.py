#!/usr/bin/env python3
"""Makes the sample's presentation beside itself: needs LibreOffice Impress."""
import pathlib
import subprocess
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
NAME = 'Safety'
SLIDES = [('Safety first', 'Three rules for every platform', '#1f4e79'),
          ('Mind the gap', 'Let travellers off before you get on', '#7a4462'),
          ('Never run', 'The next train comes in five minutes', '#3e6e5c')]
NAMESPACES = {
    'office': 'office', 'style': 'style', 'text': 'text', 'draw': 'drawing', 'fo': 'xsl-fo-compatible',
    'svg': 'svg-compatible', 'presentation': 'presentation'}


def box(style, y, height, text):
    return (f'<draw:frame draw:style-name="{style}" svg:x="2cm" svg:y="{y}cm" svg:width="24cm" svg:height="{height}cm">'
            f'<draw:text-box><text:p text:style-name="{style}p">{text}</text:p></draw:text-box></draw:frame>')


def paragraph(name, size, weight):
    return (f'<style:style style:name="{name}" style:family="graphic"><style:graphic-properties draw:fill="none" '
            f'draw:stroke="none"/></style:style><style:style style:name="{name}p" style:family="paragraph">'
            f'<style:paragraph-properties fo:text-align="center"/><style:text-properties fo:color="#ffffff" '
            f'fo:font-size="{size}pt" fo:font-weight="{weight}" fo:font-family="DejaVu Sans"/></style:style>')


def flat_presentation():
    spaces = ' '.join(f'xmlns:{name}="urn:oasis:names:tc:opendocument:xmlns:{path}:1.0"'
                      for name, path in NAMESPACES.items())
    styles = paragraph('title', 60, 'bold') + paragraph('text', 28, 'normal')
    pages = ''
    for i, (title, text, colour) in enumerate(SLIDES):
        styles += (f'<style:style style:name="g{i}" style:family="graphic"><style:graphic-properties '
                   f'draw:fill="solid" draw:fill-color="{colour}" draw:stroke="none"/></style:style>')
        pages += (f'<draw:page draw:name="page{i}" draw:master-page-name="Default">'
                  f'<draw:rect draw:style-name="g{i}" svg:x="0cm" svg:y="0cm" svg:width="28cm" '
                  f'svg:height="15.75cm"/>{box("title", 5, 3, title)}{box("text", 9, 2, text)}</draw:page>')
    return (f'<?xml version="1.0" encoding="UTF-8"?><office:document {spaces} office:version="1.2" '
            'office:mimetype="application/vnd.oasis.opendocument.presentation"><office:automatic-styles>'
            '<style:page-layout style:name="PM1"><style:page-layout-properties fo:margin="0cm" '
            f'fo:page-width="28cm" fo:page-height="15.75cm"/></style:page-layout>{styles}'
            '</office:automatic-styles><office:master-styles><style:master-page style:name="Default" '
            'style:page-layout-name="PM1"/></office:master-styles><office:body><office:presentation>'
            f'{pages}</office:presentation></office:body></office:document>')


with tempfile.TemporaryDirectory() as folder:
    source = pathlib.Path(folder, f'{NAME}.fodp')
    source.write_text(flat_presentation(), encoding='utf-8')
    subprocess.run(['soffice', f'-env:UserInstallation=file://{folder}/profile', '--headless', '--convert-to', 'odp',
                    '--outdir', HERE, source], check=True)
