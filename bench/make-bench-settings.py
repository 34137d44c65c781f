#!/usr/bin/env python3
"""Writes a main settings document for the colouring benchmarks: category
"Bench" with three coloring schemes of ten rules of two conditions each over the
generator's attributes (audience, platform, product): "Ten rules" compares
whole values, "Ten rules split" splits values at blanks. Half the rules need
both conditions (MatchAll 1). "DocBook rules" is the same rules under the
DocBook flavour's names (audience, os, condition); DocBook's ';' lists are
several values, as in DocBook XSL's profiling. The filter scheme "Reference profile"
keeps what the generator's reference DITAVAL keeps (it excludes novice,
windows and basic) on the DITA flavour, as the floor's dita filter does.
The validation scheme "Audience values" takes audience values whole, so that
rule 1 finds the generator's several-valued ones (about 15,000 at 10^6
elements). Usage: make-bench-settings.py OUT"""
import sys

RULES = [
    ("Red", ("audience", "novice"), ("platform", "windows")),
    ("Green", ("audience", "expert"), ("product", "pro")),
    ("Blue", ("platform", "linux"), ("product", "enterprise")),
    ("Cyan", ("audience", "admin"), ("platform", "mac")),
    ("Magenta", ("product", "basic"), ("audience", "expert")),
    ("Yellow", ("platform", "mac"), ("product", "basic")),
    ("Black", ("audience", "novice"), ("product", "enterprise")),
    ("Red", ("platform", "windows"), ("audience", "admin")),
    ("Green", ("product", "pro"), ("platform", "linux")),
    ("Blue", ("audience", "expert"), ("platform", "windows")),
]

# The generator writes platform as os and product as condition in DocBook.
DOCBOOK_NAMES = {"audience": "audience", "platform": "os", "product": "condition"}

DEFS = """  <element-definitions>
    <element-definition tag="VKP_MainSettings" type="1"/>
    <element-definition tag="SchemeCategories" type="1"/>
    <element-definition tag="SchemeCategory" type="1"><attribute-definition name="Name" kind="0" flags="0"/></element-definition>
    <element-definition tag="FilterSchemes" type="1"/>
    <element-definition tag="ColoringSchemes" type="1"/>
    <element-definition tag="ValidationSchemes" type="1"/>
    <element-definition tag="Scheme" type="1">
      <attribute-definition name="Name" kind="0" flags="0"/>
      <attribute-definition name="IncludeEDDDefaults" kind="0" flags="0"/>
      <attribute-definition name="SpaceDelimitedVals" kind="0" flags="0"/>
      <attribute-definition name="IgnoreCaseSensitivity" kind="0" flags="0"/>
      <attribute-definition name="ProcessAllFlows" kind="0" flags="0"/>
      <attribute-definition name="Comment" kind="0" flags="0"/>
    </element-definition>
    <element-definition tag="Rule" type="1">
      <attribute-definition name="Name" kind="0" flags="0"/>
      <attribute-definition name="Style" kind="0" flags="0"/>
      <attribute-definition name="MatchAll" kind="0" flags="0"/>
      <attribute-definition name="Override" kind="0" flags="0"/>
    </element-definition>
    <element-definition tag="Attribute" type="1">
      <attribute-definition name="Name" kind="0" flags="0"/>
      <attribute-definition name="Values" kind="1" flags="0"/>
    </element-definition>
    <element-definition tag="ColorList" type="1"><attribute-definition name="Names" kind="1" flags="0"/></element-definition>
    <element-definition tag="AttributeList" type="1"/>
  </element-definitions>
"""


def attr(name, *values):
    vals = "".join("<value>%s</value>" % v for v in values)
    return '<attribute name="%s">%s</attribute>' % (name, vals)


def scheme(name, split, names=None):
    rename = (names or {}).get
    out = ['<element tag="Scheme">', attr("Name", name), attr("SpaceDelimitedVals", "True" if split else "False")]
    for i, (color, (a1, v1), (a2, v2)) in enumerate(RULES, 1):
        a1, a2 = rename(a1, a1), rename(a2, a2)
        prefix = ("%u  %s" if i < 10 else "%u %s") % (i, color)
        out.append('<element tag="Rule">%s%s%s%s' % (attr("Name", prefix), attr("Style", str(i % 8)),
                                                     attr("MatchAll", "1" if i % 2 else "0"), attr("Override", "0")))
        out.append('<element tag="Attribute">%s%s</element>' % (attr("Name", a1), attr("Values", v1)))
        out.append('<element tag="Attribute">%s%s</element></element>' % (attr("Name", a2), attr("Values", v2)))
    out.append("</element>")
    return "\n".join(out)


# Every other value of the generator, and elements without one.
KEPT = {"audience": ("expert", "admin"), "platform": ("linux", "mac"), "product": ("pro", "enterprise")}


def filter_scheme(name):
    out = ['<element tag="Scheme">', attr("Name", name), attr("IncludeEDDDefaults", "False"),
           attr("SpaceDelimitedVals", "True"), attr("IgnoreCaseSensitivity", "False"), attr("ProcessAllFlows", "False")]
    for attribute, values in KEPT.items():
        out.append('<element tag="Attribute">%s%s</element>' % (attr("Name", attribute),
                                                                attr("Values", *values, "&lt;no value&gt;")))
    out.append("</element>")
    return "\n".join(out)


def validation_scheme(name):
    return "\n".join(['<element tag="Scheme">', attr("Name", name), attr("IncludeEDDDefaults", "False"),
                      attr("SpaceDelimitedVals", "False"), attr("IgnoreCaseSensitivity", "False"),
                      attr("ProcessAllFlows", "False"),
                      '<element tag="Attribute">%s%s</element>' % (
                          attr("Name", "audience"), attr("Values", "novice", "expert", "admin", "&lt;no value&gt;")),
                      "</element>"])


def main():
    body = ['<element tag="VKP_MainSettings"><element tag="SchemeCategories"><element tag="SchemeCategory">',
            attr("Name", "Bench"), '<element tag="FilterSchemes">', filter_scheme("Reference profile"),
            '</element><element tag="ColoringSchemes">',
            scheme("Ten rules", False), scheme("Ten rules split", True),
            scheme("DocBook rules", False, DOCBOOK_NAMES),
            '</element><element tag="ValidationSchemes">', validation_scheme("Audience values"),
            '</element></element></element>',
            '<element tag="ColorList">%s</element>' % attr("Names", "Red", "Green", "Blue"),
            '<element tag="AttributeList"/></element>']
    with open(sys.argv[1], "w") as fh:
        fh.write('<?xml version="1.0" encoding="UTF-8"?>\n<voka-document version="1">\n')
        fh.write(DEFS)
        fh.write('  <flow name="A" main="1">\n%s\n  </flow>\n</voka-document>\n' % "\n".join(body))


main()
