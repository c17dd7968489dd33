#!/usr/bin/env python3
"""Builds the catalog databases that ship in data/.

Run from anywhere:

    python3 tools/build_catalog.py

It fetches its sources into tools/catalog-cache/ (ignored by git) unless they are
already there: the Debian package stellarium-data (apt-get download, dpkg -x) and
the npm package d3-celestial (npm pack, then unpacked). The Bright Star Catalogue
comes from data/sources/bsc5.dat in the project. It then writes

    data/TavorineList.mdb        the catalogs, MapStars and the view "MapStars to 4_5"
    data/TavorineTemplate.tmp    an empty list document (table Objects)
    data/TavorineUserList.tmp    an empty UserObjects table
    data/SOURCES                 where every table comes from, with licences

All of them are SQLite 3 files despite their names. The same inputs always give
the same rows in the same order.
"""

import glob
import gzip
import json
import math
import os
import re
import sqlite3
import struct
import subprocess
import sys
import tarfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
CACHE = os.path.join(ROOT, "tools", "catalog-cache")
DATA = os.path.join(ROOT, "data")
BSC_FILE = os.path.join(DATA, "sources", "bsc5.dat")
STEL = os.path.join(CACHE, "stellarium", "usr", "share", "stellarium")
D3 = os.path.join(CACHE, "d3-celestial", "package", "data")


# ---------------------------------------------------------------- sources

def fetch_sources():
    os.makedirs(CACHE, exist_ok=True)
    if not os.path.isdir(STEL):
        debs = glob.glob(os.path.join(CACHE, "stellarium-data_*.deb"))
        if not debs:
            subprocess.run(["apt-get", "download", "stellarium-data"], cwd=CACHE, check=True)
            debs = glob.glob(os.path.join(CACHE, "stellarium-data_*.deb"))
        subprocess.run(["dpkg", "-x", sorted(debs)[-1], os.path.join(CACHE, "stellarium")], check=True)
    if not os.path.isdir(D3):
        tgzs = glob.glob(os.path.join(CACHE, "d3-celestial-*.tgz"))
        if not tgzs:
            subprocess.run(["npm", "pack", "d3-celestial"], cwd=CACHE, check=True,
                           stdout=subprocess.DEVNULL)
            tgzs = glob.glob(os.path.join(CACHE, "d3-celestial-*.tgz"))
        with tarfile.open(sorted(tgzs)[-1]) as tf:
            tf.extractall(os.path.join(CACHE, "d3-celestial"))
    if not os.path.isfile(BSC_FILE):
        sys.exit("missing %s (the Bright Star Catalogue, see data/sources/README)" % BSC_FILE)


def source_versions():
    deb = sorted(glob.glob(os.path.join(CACHE, "stellarium-data_*.deb")))
    stel = os.path.basename(deb[-1]).split("_")[1] if deb else "unknown"
    with open(os.path.join(CACHE, "d3-celestial", "package", "package.json")) as f:
        d3 = json.load(f)["version"]
    return stel, d3


# ---------------------------------------------------------------- positions

def split_position(ra_deg, dec_deg):
    """RA and Dec in degrees to the five stored fields, minutes to one decimal."""
    tenths = int(round((ra_deg % 360.0) / 15.0 * 600.0))
    tenths %= 24 * 600
    ra_h, ra_t = divmod(tenths, 600)
    dtenths = int(round(abs(dec_deg) * 600.0))
    dtenths = min(dtenths, 90 * 600)
    dec_d, dec_t = divmod(dtenths, 600)
    sign = "-" if dec_deg < 0 and dtenths > 0 else "+"
    return float(ra_h), ra_t / 10.0, sign, float(dec_d), dec_t / 10.0


def mag_text(v):
    if v is None:
        return ""
    t = "%.1f" % v
    return "0.0" if t == "-0.0" else t


def sep_text(s):
    return ("%.1f" % s) if s < 100 else ("%.0f" % s)


def angular_sep(ra1, de1, ra2, de2):
    r1, d1, r2, d2 = map(math.radians, (ra1, de1, ra2, de2))
    c = math.sin(d1) * math.sin(d2) + math.cos(d1) * math.cos(d2) * math.cos(r1 - r2)
    return math.degrees(math.acos(max(-1.0, min(1.0, c))))


def position_angle(ra1, de1, ra2, de2):
    r1, d1, r2, d2 = map(math.radians, (ra1, de1, ra2, de2))
    y = math.sin(r2 - r1)
    x = math.cos(d1) * math.tan(d2) - math.sin(d1) * math.cos(r2 - r1)
    return math.degrees(math.atan2(y, x)) % 360.0


# ---------------------------------------------------------------- constellations

def _precession_matrix_to_b1875():
    # IAU 1976 precession from J2000.0 to B1875.0 (JD 2405889.25855).
    t = (2405889.25855 - 2451545.0) / 36525.0
    asec = math.pi / 180.0 / 3600.0
    zeta = (2306.2181 * t + 0.30188 * t * t + 0.017998 * t ** 3) * asec
    z = (2306.2181 * t + 1.09468 * t * t + 0.018203 * t ** 3) * asec
    theta = (2004.3109 * t - 0.42665 * t * t - 0.041833 * t ** 3) * asec
    cz, sz = math.cos(zeta), math.sin(zeta)
    cZ, sZ = math.cos(z), math.sin(z)
    ct, st = math.cos(theta), math.sin(theta)
    return (
        (cZ * ct * cz - sZ * sz, -cZ * ct * sz - sZ * cz, -cZ * st),
        (sZ * ct * cz + cZ * sz, -sZ * ct * sz + cZ * cz, -sZ * st),
        (st * cz, -st * sz, ct),
    )


_P1875 = _precession_matrix_to_b1875()


def to_b1875(ra_deg, dec_deg):
    r, d = math.radians(ra_deg), math.radians(dec_deg)
    v = (math.cos(d) * math.cos(r), math.cos(d) * math.sin(r), math.sin(d))
    w = [sum(_P1875[i][j] * v[j] for j in range(3)) for i in range(3)]
    ra = math.degrees(math.atan2(w[1], w[0])) % 360.0
    dec = math.degrees(math.asin(max(-1.0, min(1.0, w[2]))))
    return ra, dec


class ConstellationFinder:
    """Point in the IAU boundaries. The boundaries are lines of constant RA and Dec
    of the equinox B1875, so corners and the point are both taken to B1875, where a
    plain test in the (RA, Dec) plane is exact."""

    def __init__(self, bounds_path, names_path):
        with open(names_path, encoding="utf-8") as f:
            feats = json.load(f)["features"]
        self.full = {ft["id"]: ft["properties"]["name"] for ft in feats}
        self.genitive = {ft["id"]: ft["properties"]["gen"] for ft in feats}
        # Serpens is one constellation in two parts; the list gives each part its own name.
        self.full["Ser"] = "Serpens"
        self.genitive["Ser"] = "Serpentis"
        with open(bounds_path, encoding="utf-8") as f:
            feats = json.load(f)["features"]
        self.polys = []
        for ft in feats:
            ring = ft["geometry"]["coordinates"][0]
            pts = [to_b1875(lon % 360.0, lat) for lon, lat in ring]
            if pts[0] == pts[-1]:
                pts = pts[:-1]
            # Unwrap RA so that the ring is continuous; a ring that winds once round
            # the pole is closed over the pole.
            un = [pts[0]]
            for ra, dec in pts[1:]:
                prev = un[-1][0]
                while ra - prev > 180:
                    ra -= 360
                while ra - prev < -180:
                    ra += 360
                un.append((ra, dec))
            delta = (un[0][0] - un[-1][0] + 180.0) % 360.0 - 180.0
            winding = round((un[-1][0] + delta - un[0][0]) / 360.0)
            if winding != 0:
                pole = 90.0 if sum(p[1] for p in un) > 0 else -90.0
                end_ra = un[-1][0] + delta
                un = un + [(end_ra, un[0][1]), (end_ra, pole), (un[0][0], pole)]
            ras = [p[0] for p in un]
            decs = [p[1] for p in un]
            self.polys.append((ft["id"], un, min(ras), max(ras), min(decs), max(decs)))

    @staticmethod
    def _inside(x, y, pts):
        inside = False
        n = len(pts)
        j = n - 1
        for i in range(n):
            xi, yi = pts[i]
            xj, yj = pts[j]
            if (yi > y) != (yj > y):
                xc = xi + (y - yi) * (xj - xi) / (yj - yi)
                if x < xc:
                    inside = not inside
            j = i
        return inside

    def abbrev(self, ra_deg, dec_deg):
        ra, dec = to_b1875(ra_deg, dec_deg)
        for cid, pts, rmin, rmax, dmin, dmax in self.polys:
            if dec < dmin or dec > dmax:
                continue
            for shift in (-360.0, 0.0, 360.0):
                x = ra + shift
                if rmin <= x <= rmax and self._inside(x, dec, pts):
                    return cid
        return ""

    def name(self, ra_deg, dec_deg):
        return self.full.get(self.abbrev(ra_deg, dec_deg), "")


# ---------------------------------------------------------------- Stellarium deep-sky catalogue

DSO_NUMBER_FIELDS_1 = ["NGC", "IC", "M", "C", "B", "Sh2", "VdB", "RCW", "LDN", "LBN", "Cr",
                       "Mel", "PGC", "UGC"]
DSO_TEXT_FIELDS = ["PK", "PNG", "SNRG", "ACO", "HCG", "ESO", "VdBH"]
DSO_NUMBER_FIELDS_2 = ["DWB", "Tr", "St", "Ru", "VdBHa"]


def clean_morphology(text):
    # Sharpless' form, structure and brightness classes ("3, 2, 3") mean little in a list.
    parts = [p.strip() for p in text.split(";")]
    keep = [p for p in parts if p and not re.fullmatch(r"\d, \d, \d", p)]
    return "; ".join(keep)


def read_stellarium_dso(path):
    data = gzip.open(path).read()
    pos = 0

    def u32():
        nonlocal pos
        v = struct.unpack_from(">I", data, pos)[0]
        pos += 4
        return v

    def dbl():
        nonlocal pos
        v = struct.unpack_from(">d", data, pos)[0]
        pos += 8
        return v

    def qstr():
        nonlocal pos
        n = u32()
        if n == 0xFFFFFFFF:
            return ""
        s = data[pos:pos + n].decode("utf-16-be")
        pos += n
        return s

    version, edition = qstr(), qstr()
    recs = []
    while pos < len(data):
        r = {"id": u32(), "ra": math.degrees(dbl()), "dec": math.degrees(dbl())}
        r["bmag"], r["vmag"] = dbl(), dbl()
        r["type"] = u32()
        r["morph"] = clean_morphology(qstr())
        r["maj"], r["min"] = dbl() * 60.0, dbl() * 60.0
        u32()
        for _ in range(6):
            dbl()
        for k in DSO_NUMBER_FIELDS_1:
            r[k] = u32()
        r["Ced"] = qstr().strip()
        r["Arp"], r["VV"] = u32(), u32()
        for k in DSO_TEXT_FIELDS:
            r[k] = qstr().strip()
        for k in DSO_NUMBER_FIELDS_2:
            r[k] = u32()
        recs.append(r)
    if pos != len(data):
        raise SystemExit("catalog.dat: unexpected layout")
    return version, edition, recs


# Stellarium type code -> (Type, remark for Info). The six values the filter tests
# are used wherever an observer would file the object under them.
TYPE_MAP = {
    0: ("Galaxy", ""), 1: ("Galaxy", "active galaxy"), 2: ("Galaxy", "radio galaxy"),
    3: ("Galaxy", "interacting galaxy"), 4: ("Quasar", ""),
    5: ("Open Cluster", "star cluster"), 6: ("Open Cluster", ""),
    7: ("Globular Cluster", ""), 8: ("Open Cluster", "stellar association"),
    9: ("Star Cloud", ""), 10: ("Nebula", ""), 11: ("Planetary Nebula", ""),
    12: ("Dark Nebula", ""), 13: ("Nebula", "reflection nebula"),
    14: ("Nebula", "bipolar nebula"), 15: ("Nebula", "emission nebula"),
    16: ("Cluster Nebulosity", ""), 17: ("Nebula", "HII region"),
    18: ("Supernova Remnant", ""), 19: ("Nebula", "interstellar matter"),
    20: ("Nebula", "emission object"), 21: ("Quasar", "BL Lac object"),
    22: ("Quasar", "blazar"), 23: ("Dark Nebula", "molecular cloud"),
    24: ("Young Stellar Object", ""), 25: ("Quasar", "possible quasar"),
    26: ("Planetary Nebula", "possible planetary nebula"),
    27: ("Protoplanetary Nebula", ""), 28: ("Star", ""), 29: ("Star", "symbiotic star"),
    30: ("Star", "emission-line star"), 31: ("Supernova Candidate", ""),
    32: ("Supernova Remnant", "candidate"), 33: ("Galaxy Cluster", ""),
    34: ("Galaxy Part", ""), 35: ("Sky Region", ""), 36: ("Unknown", ""),
}

TRUMPLER_START = ("I", "V")

# The Messier, Caldwell, NGC and IC pages filter on the filter's six kinds only: there each
# Stellarium type becomes one of them, and the finer kind goes to Info.
FILTER_TYPE_MAP = {
    0: ("Galaxy", ""), 1: ("Galaxy", "active galaxy"), 2: ("Galaxy", "radio galaxy"),
    3: ("Galaxy", "interacting galaxy"), 4: ("Galaxy", "quasar"),
    5: ("Open Cluster", "star cluster"), 6: ("Open Cluster", ""),
    7: ("Globular Cluster", ""), 8: ("Open Cluster", "stellar association"),
    9: ("Open Cluster", "star cloud"), 10: ("Nebula", ""), 11: ("Planetary Nebula", ""),
    12: ("Nebula", "dark nebula"), 13: ("Nebula", "reflection nebula"),
    14: ("Nebula", "bipolar nebula"), 15: ("Nebula", "emission nebula"),
    16: ("Cluster Nebulosity", ""), 17: ("Nebula", "HII region"),
    18: ("Nebula", "supernova remnant"), 19: ("Nebula", "interstellar matter"),
    20: ("Nebula", "emission object"), 21: ("Galaxy", "BL Lac object"),
    22: ("Galaxy", "blazar"), 23: ("Nebula", "molecular cloud"),
    24: ("Nebula", "young stellar object"), 25: ("Galaxy", "possible quasar"),
    26: ("Planetary Nebula", "possible planetary nebula"),
    27: ("Nebula", "protoplanetary nebula"), 28: ("Open Cluster", "star"),
    29: ("Open Cluster", "symbiotic star"), 30: ("Open Cluster", "emission-line star"),
    31: ("Nebula", "supernova candidate"), 32: ("Nebula", "supernova remnant candidate"),
    33: ("Galaxy", "cluster of galaxies"), 34: ("Galaxy", "part of a galaxy"),
    35: ("Nebula", "region of the sky"), 36: ("Nebula", "unidentified object"),
}
FILTER_TABLES = ("Messier", "Caldwell", "NGC", "IC")


def dso_type(r, table):
    if table not in FILTER_TABLES:
        typ, remark = TYPE_MAP.get(r["type"], ("Unknown", ""))
        if r["type"] == 5 and "cloud" in r["morph"].lower():
            typ, remark = "Star Cloud", ""
        return typ, remark
    typ, remark = FILTER_TYPE_MAP.get(r["type"], ("Nebula", "unidentified object"))
    if r["type"] == 5 and "cloud" in r["morph"].lower():
        remark = "star cloud"
    if typ == "Cluster Nebulosity" and table in ("Messier", "Caldwell"):
        # Those pages filter on the five plain kinds only: a cluster with nebulosity
        # counts as the cluster when it has a Trumpler class, else as the nebula.
        remark = "cluster with nebulosity"
        typ = "Open Cluster" if r["morph"][:1] in TRUMPLER_START else "Nebula"
    if table == "Messier" and r["M"] == 40:
        remark = "double star"
    return typ, remark


def size_text(maj, mnr):
    def f(x):
        return ("%.0f" % x) if x >= 10 else ("%.1f" % x)
    if maj <= 0:
        return ""
    if mnr <= 0 or abs(maj - mnr) < 1e-6:
        return "size %s'" % f(maj)
    return "size %s'x%s'" % (f(maj), f(mnr))


# Designations worth naming in Info, in this order, with their prefixes.
INFO_DESIGNATIONS = [("M", "M %s"), ("C", "C %s"), ("NGC", "NGC %s"), ("IC", "IC %s"),
                     ("Mel", "Mel %s"), ("Cr", "Cr %s"), ("Sh2", "Sh2-%s"), ("B", "B %s"),
                     ("Arp", "Arp %s")]


def dso_info(r, own_key, remark):
    parts = []
    for key, fmt in INFO_DESIGNATIONS:
        if key != own_key and r[key]:
            parts.append(fmt % r[key])
    s = size_text(r["maj"], r["min"])
    if s:
        parts.append(s)
    if r["morph"]:
        parts.append(r["morph"])
    if remark:
        parts.append(remark)
    return ", ".join(parts)


def dso_mag(r):
    # A visual magnitude fainter than the blue one belongs to a part of the object (no galaxy
    # or cluster is bluer than that): the blue one is then nearer the whole.
    if r["vmag"] < 90 and not (r["bmag"] < 90 and r["vmag"] > r["bmag"] + 0.1):
        return mag_text(r["vmag"])
    if r["bmag"] < 90:
        return mag_text(r["bmag"])
    return ""


# names.dat prefix -> record field
NAME_PREFIX_FIELD = {"M": "M", "C": "C", "NGC": "NGC", "IC": "IC", "B": "B", "SH2": "Sh2",
                     "VDB": "VdB", "RCW": "RCW", "LDN": "LDN", "LBN": "LBN", "CR": "Cr",
                     "MEL": "Mel", "PGC": "PGC", "UGC": "UGC", "CED": "Ced", "ARP": "Arp",
                     "VV": "VV", "PK": "PK", "PNG": "PNG", "SNRG": "SNRG", "ACO": "ACO",
                     "HCG": "HCG", "ESO": "ESO", "VDBH": "VdBH", "DWB": "DWB", "TR": "Tr",
                     "ST": "St", "RU": "Ru", "VDBHA": "VdBHa"}


GREEK_LETTERS = dict(zip("αβγδεζηθικλμνξοπρσςτυφχψω",
                         ["Alpha", "Beta", "Gamma", "Delta", "Epsilon", "Zeta", "Eta", "Theta",
                          "Iota", "Kappa", "Lambda", "Mu", "Nu", "Xi", "Omicron", "Pi", "Rho",
                          "Sigma", "Sigma", "Tau", "Upsilon", "Phi", "Chi", "Psi", "Omega"],
                         strict=True))


def latin_text(text):
    # Lists are exported in a single-byte code page: spell Greek letters out.
    return "".join(GREEK_LETTERS.get(ch, ch) for ch in text)


def read_dso_names(path, recs):
    index = {}
    for r in recs:
        for field in NAME_PREFIX_FIELD.values():
            v = r[field]
            if v:
                index.setdefault((field, str(v).upper()), r["id"])
    names = {}
    with open(path, encoding="utf-8") as f:
        for line in f:
            if line.startswith("#") or len(line) < 21:
                continue
            prefix = line[0:5].strip().upper()
            ident = line[5:20].strip().upper()
            rest = line[20:]
            if '_("' not in rest:
                continue
            name = latin_text(rest.split('_("', 1)[1].split('")', 1)[0].strip())
            field = NAME_PREFIX_FIELD.get(prefix)
            rid = index.get((field, ident)) if field else None
            if rid is None or not name:
                continue
            lst = names.setdefault(rid, [])
            if name not in lst:
                lst.append(name)
    return names


def dso_name(names, r, limit=3):
    return "; ".join(names.get(r["id"], [])[:limit])


COMMON_COLUMNS = ["Category", "ObjectNum", "Name", "Type", "Constellation", "Magnitude", "Info",
                  "RAHour", "RAMinute", "DecSign", "DecDeg", "DecMinute"]


def object_row(category, num, name, typ, con, mag, info, ra, dec):
    h, m, s, d, dm = split_position(ra, dec)
    return (category, num, name, typ, con, mag, info, h, m, s, d, dm)


def numeric_or_text(v):
    v = str(v).strip()
    return int(v) if v.isdigit() else v


# Objects Stellarium files under another NGC number of the same object (Revised NGC/IC,
# Steinicke): both numbers give the object. Herschel 400 objects among them.
NGC_SAME_AS = {2372: 2371, 3184: 3180, 4214: 4228, 4665: 4664, 5907: 5906}

# Objects the sources lack, from the Astronomical League's Herschel 400 list.
ADDED_OBJECTS = [
    {"NGC": 6832, "type": 6, "ra": (19 + 48.3 / 60) * 15, "dec": 59 + 25 / 60,
     "name": "", "remark": "Herschel 400"},
]

# Magnitudes the source gives for a part or a different band, set to the integrated visual
# magnitude (see data/SOURCES): Harris (1996, 2010 edition) for globular clusters, the RC3
# for galaxies, Sky Catalogue 2000.0 for the rest.
MAGNITUDE_FIXES = {("NGC", 5139): 3.7, ("NGC", 6514): 6.3, ("NGC", 4565): 9.6, ("NGC", 1275): 11.6,
                   ("NGC", 5005): 9.8, ("NGC", 2419): 10.4, ("NGC", 3201): 6.8,
                   ("NGC", 4372): 7.2, ("NGC", 4697): 9.3, ("NGC", 2451): 2.8}


def added_record(entry, next_id):
    r = {"id": next_id, "ra": entry["ra"], "dec": entry["dec"], "bmag": 99.0, "vmag": 99.0,
         "type": entry["type"], "morph": "", "maj": 0.0, "min": 0.0, "Ced": ""}
    for k in DSO_NUMBER_FIELDS_1 + DSO_NUMBER_FIELDS_2 + ["Arp", "VV"]:
        r[k] = entry.get(k, 0)
    for k in DSO_TEXT_FIELDS:
        r[k] = ""
    return r


def fix_magnitudes(recs):
    for r in recs:
        for (key, num), mag in MAGNITUDE_FIXES.items():
            if r[key] == num:
                r["vmag"], r["bmag"] = mag, 99.0


def build_dso_tables(recs, names, con):
    first = {}
    for r in sorted(recs, key=lambda x: x["id"]):
        for key in ("M", "C", "NGC", "IC"):
            if r[key]:
                first.setdefault((key, r[key]), r)
    remarks = {}
    for num, other in NGC_SAME_AS.items():
        if ("NGC", num) not in first and ("NGC", other) in first:
            first[("NGC", num)] = first[("NGC", other)]
            remarks[("NGC", num)] = "also NGC %d" % other
    next_id = max(r["id"] for r in recs) + 1
    for entry in ADDED_OBJECTS:
        if ("NGC", entry["NGC"]) not in first:
            first[("NGC", entry["NGC"])] = added_record(entry, next_id)
            remarks[("NGC", entry["NGC"])] = entry["remark"]
            next_id += 1

    def table_rows(key, category):
        rows = []
        nums = sorted(n for (k, n) in first if k == key)
        for n in nums:
            r = first[(key, n)]
            typ, remark = dso_type(r, category)
            remark = ", ".join(x for x in (remark, remarks.get((key, n), "")) if x)
            info = dso_info(r, key, remark)
            ra, dec = r["ra"], r["dec"]
            if key == "C" and n == 14:
                # The Double Cluster is two catalogue entries: one row between them.
                pair = sorted((x for x in recs if x["C"] == 14), key=lambda x: x["id"])
                ra = (pair[0]["ra"] + pair[1]["ra"]) / 2
                dec = (pair[0]["dec"] + pair[1]["dec"]) / 2
                info = "NGC 869 and NGC 884, " + size_text(r["maj"], r["min"]) + ", " + r["morph"]
            rows.append(object_row(category, n, dso_name(names, r) or "", typ,
                                   con.name(ra, dec), dso_mag(r), info, ra, dec))
        return rows

    messier = table_rows("M", "Messier")
    caldwell = table_rows("C", "Caldwell")
    ngc = table_rows("NGC", "NGC")
    ic = table_rows("IC", "IC")
    return messier, caldwell, ngc, ic


# Deep-sky catalogues beyond NGC/IC: (record field, Category, designation format)
DEEP_SKY_CATALOGUES = [
    ("Arp", "Arp"), ("B", "B"), ("Ced", "Ced"), ("Cr", "Cr"), ("DWB", "DWB"),
    ("HCG", "HCG"), ("ACO", "Abell"), ("LBN", "LBN"), ("LDN", "LDN"), ("Mel", "Mel"),
    ("PK", "PK"), ("RCW", "RCW"), ("Ru", "Ru"), ("Sh2", "Sh2"), ("St", "St"), ("Tr", "Tr"),
    ("VdB", "vdB"), ("VdBHa", "vdB-Ha"), ("VdBH", "vdBH"), ("PGC", "PGC"),
]


def in_deep_sky(r, field, names):
    # Of the principal galaxies only those known by a name of their own and by no NGC, IC,
    # Messier or Caldwell number: the Large Magellanic Cloud, the dwarf galaxies.
    if field != "PGC":
        return True
    return r["id"] in names and not (r["NGC"] or r["IC"] or r["M"] or r["C"])


def build_deep_sky(recs, names, con):
    rows = []
    for field, category in DEEP_SKY_CATALOGUES:
        seen = {}
        for r in sorted(recs, key=lambda x: x["id"]):
            v = r[field]
            if v and in_deep_sky(r, field, names):
                seen.setdefault(str(v), r)

        def key(item):
            v = item[0]
            digits = "".join(ch for ch in v if ch.isdigit())
            lead = ""
            for ch in v:
                if not ch.isdigit():
                    break
                lead += ch
            return (int(lead) if lead else int(digits or 0), v)

        for v, r in sorted(seen.items(), key=key):
            typ, remark = dso_type(r, "Deep-sky")
            info = dso_info(r, field, remark)
            rows.append(object_row(category, numeric_or_text(v), dso_name(names, r), typ,
                                   con.name(r["ra"], r["dec"]), dso_mag(r), info,
                                   r["ra"], r["dec"]))
    return rows


# ---------------------------------------------------------------- stars

GREEK = {"Alp": "Alpha", "Bet": "Beta", "Gam": "Gamma", "Del": "Delta", "Eps": "Epsilon",
         "Zet": "Zeta", "Eta": "Eta", "The": "Theta", "Iot": "Iota", "Kap": "Kappa",
         "Lam": "Lambda", "Mu": "Mu", "Nu": "Nu", "Xi": "Xi", "Omi": "Omicron", "Pi": "Pi",
         "Rho": "Rho", "Sig": "Sigma", "Tau": "Tau", "Ups": "Upsilon", "Phi": "Phi",
         "Chi": "Chi", "Psi": "Psi", "Ome": "Omega"}


def read_bsc(path):
    stars = {}
    with open(path, encoding="latin-1") as f:
        for line in f:
            line = line.rstrip("\r\n").ljust(197)
            hr = int(line[0:4])

            def num(a, b):
                t = line[a - 1:b].strip()
                try:
                    return float(t)
                except ValueError:
                    return None
            s = {"hr": hr,
                 "flam": line[4:7].strip(), "bayer": line[7:10].strip(),
                 "bayer_sup": line[10:11].strip(), "con": line[11:14].strip(),
                 "hd": line[25:31].strip(), "sao": line[31:37].strip(),
                 "ads": line[44:49].strip(), "ads_comp": line[49:51].strip(),
                 "v": num(103, 107), "sp": line[127:147].strip(),
                 "dmag": num(181, 184), "sep": num(185, 190),
                 "multid": line[190:194].strip()}
            if line[75:77].strip():
                ra = (int(line[75:77]) + int(line[77:79]) / 60 + float(line[79:83]) / 3600) * 15
                dec = int(line[84:86]) + int(line[86:88]) / 60 + int(line[88:90]) / 3600
                s["ra"], s["dec"] = ra, (-dec if line[83] == "-" else dec)
            else:
                s["ra"] = s["dec"] = None
            stars[hr] = s
    return stars


def bayer_flamsteed(s, genitive):
    """['Alpha Lyrae', '3 Lyrae'] for a BSC record."""
    gen = genitive.get(s["con"], s["con"])
    out = []
    if s["bayer"] in GREEK:
        g = GREEK[s["bayer"]]
        if s["bayer_sup"]:
            # Epsilon-1 Lyrae is also found as Epsilon Lyrae, the name observers use.
            out.append("%s-%s %s" % (g, s["bayer_sup"], gen))
        out.append("%s %s" % (g, gen))
    if s["flam"]:
        out.append("%s %s" % (s["flam"], gen))
    return out


def read_star_names(path):
    names = {}
    with open(path, encoding="utf-8") as f:
        for line in f:
            if line.startswith("#") or "|" not in line:
                continue
            hip, rest = line.split("|", 1)
            if '_("' not in rest:
                continue
            name = rest.split('_("', 1)[1].split('")', 1)[0].strip()
            names.setdefault(int(hip), name)
    return names


def read_cross_id(path):
    out = {}
    with open(path) as f:
        for line in f:
            if line.startswith("#"):
                continue
            p = line.rstrip("\n").split("\t")
            p += [""] * (5 - len(p))
            hip, comp = int(p[0]), p[1].strip()
            if hip in out and comp not in ("", "A"):
                continue
            out[hip] = {"sao": int(p[2]) if p[2].strip() else None,
                        "hd": int(p[3]) if p[3].strip() else None,
                        "hr": int(p[4]) if p[4].strip() else None}
    return out


def read_d3_stars(path):
    with open(path) as f:
        feats = json.load(f)["features"]
    out = {}
    for ft in feats:
        lon, lat = ft["geometry"]["coordinates"]
        mag = ft["properties"]["mag"]
        if mag is None:
            continue
        out[int(ft["id"])] = (lon % 360.0, lat, float(mag))
    return out


def build_stars(stars8, cross, bsc, starnames, con):
    by_sao = {}
    for hip in sorted(stars8):
        ra, dec, mag = stars8[hip]
        if mag >= 8.0:
            continue
        cid = cross.get(hip)
        if not cid or not cid["sao"]:
            continue
        old = by_sao.get(cid["sao"])
        if old is None or mag < stars8[old][2]:
            by_sao[cid["sao"]] = hip
    rows = []
    for sao in sorted(by_sao):
        hip = by_sao[sao]
        ra, dec, mag = stars8[hip]
        cid = cross[hip]
        names = []
        if hip in starnames:
            names.append(starnames[hip])
        s = bsc.get(cid["hr"]) if cid["hr"] else None
        if s:
            names += bayer_flamsteed(s, con.genitive)
        info = []
        if cid["hd"]:
            info.append("HD %d" % cid["hd"])
        if cid["hr"]:
            info.append("HR %d" % cid["hr"])
        info.append("HIP %d" % hip)
        if s and s["sp"]:
            info.append(s["sp"])
        rows.append(object_row("SAO", sao, ", ".join(names), "Star", con.name(ra, dec),
                               mag_text(mag), ", ".join(info), ra, dec))
    return rows


DISCOVERERS = {"Σ": "STF", "Σ_I": "STFA", "Σ_II": "STFB", "ΟΣ": "STT", "ΟΣΣ": "STTA",
               "β": "BU", "Δ": "DUN"}
PLAIN_DISCOVERERS = {"H", "HJ", "SHJ", "S", "A", "HU", "ES", "HO", "AC", "J", "KUI", "COU",
                     "RST", "I", "B"}


def read_discoverer_names(path):
    out = {}
    with open(path, encoding="utf-8") as f:
        for line in f:
            if line.startswith("#") or "|" not in line:
                continue
            hip, desig = line.split("|", 1)
            parts = desig.strip().split("_")
            i = len(parts)
            while i > 0 and parts[i - 1].isdigit():
                i -= 1
            code, nums = "_".join(parts[:i]), parts[i:]
            if not nums:
                continue
            if code in DISCOVERERS:
                code = DISCOVERERS[code]
            elif code not in PLAIN_DISCOVERERS:
                continue
            out.setdefault(int(hip), []).append(code + " " + " ".join(nums))
    return out


def read_wds(path):
    out = {}
    with open(path) as f:
        for line in f:
            if line.startswith("#"):
                continue
            p = line.split()
            out[int(p[0])] = {"wds": p[1], "pa": float(p[3]), "sep": float(p[4])}
    return out


# Discoverers of close pairs: a designation of theirs names a pair closer than this.
CLOSE_PAIR_DISCOVERERS = ("B", "BU", "I", "A", "STT", "STF", "HU", "RST", "COU")
CLOSE_PAIR_LIMIT = 35.0


def pair_names(s, hip, w, starnames, discoverers, genitive, multid, sep):
    """The designations of a double: names of the primary, then the designations of the pair.
    A discoverer's number names the pair AB, so it is given only for that pair, and a close
    pair discoverer's only where the separation is one of theirs."""
    names = []
    if hip in starnames:
        names.append(starnames[hip])
    if s:
        names += bayer_flamsteed(s, genitive)
        if s["ads"]:
            names.append("ADS %s" % s["ads"])
    if w:
        names.append("WDS %s" % w["wds"])
    if multid in ("", "AB"):
        names += [n for n in discoverers.get(hip, [])
                  if sep <= CLOSE_PAIR_LIMIT or n.split(" ")[0] not in CLOSE_PAIR_DISCOVERERS][:3]
    return names


def build_doubles(bsc, cross, wds, stars14, starnames, discoverers, con):
    hr_to_hip = {v["hr"]: hip for hip, v in cross.items() if v["hr"]}
    candidates = []  # (ra, dec, names, mag1, mag2, info parts)
    covered_wds = set()
    covered_ads = set()
    seen_pairs = {}
    for hr in sorted(bsc):
        s = bsc[hr]
        if s["ra"] is None or s["v"] is None or s["dmag"] is None or not s["sep"]:
            continue
        key = ("ADS", s["ads"], s["multid"]) if s["ads"] else ("HR", hr, s["multid"])
        if key in seen_pairs and bsc[seen_pairs[key]]["v"] <= s["v"]:
            continue
        seen_pairs[key] = hr
    # Both components of a pair may carry the pair's data; keep the brighter one.
    kept = []
    for hr in sorted(seen_pairs.values(), key=lambda h: (bsc[h]["v"], h)):
        s = bsc[hr]
        if any(abs(bsc[k]["sep"] - s["sep"]) <= 0.1 and
               angular_sep(s["ra"], s["dec"], bsc[k]["ra"], bsc[k]["dec"]) * 3600 <= s["sep"] + 2
               for k in kept):
            continue
        kept.append(hr)
    pairs = [(hr, s["v"], s["v"] + s["dmag"], s["sep"], s["multid"])
             for hr, s in ((h, bsc[h]) for h in kept)]
    covered_ads.update(bsc[hr]["ads"] for hr in kept if bsc[hr]["ads"])
    # Components A and B of an ADS pair that the catalogue lists as two stars, where the
    # magnitude difference and separation given name something else (Mizar's are those of its
    # spectroscopic companion): the separation comes from the two positions.
    by_ads = {}
    for hr in sorted(bsc):
        s = bsc[hr]
        if s["ads"] and s["ra"] is not None and s["v"] is not None:
            by_ads.setdefault(s["ads"], {}).setdefault(s["ads_comp"], hr)
    for ads in sorted(by_ads, key=int):
        comps = by_ads[ads]
        if ads in covered_ads or "A" not in comps or "B" not in comps:
            continue
        a, b = bsc[comps["A"]], bsc[comps["B"]]
        sep = angular_sep(a["ra"], a["dec"], b["ra"], b["dec"]) * 3600
        pairs.append((comps["A"], a["v"], b["v"], sep, "AB"))
    for hr, mag1, mag2, sep, multid in sorted(pairs):
        s = bsc[hr]
        hip = hr_to_hip.get(hr)
        w = wds.get(hip) if hip else None
        names = pair_names(s, hip, w, starnames, discoverers, con.genitive, multid, sep)
        if w:
            covered_wds.add(w["wds"])
        if not names:
            names.append("HR %d" % hr)
        info = ['%s"' % sep_text(sep)]
        if w and w["pa"] >= 0 and w["sep"] > 0 and abs(w["sep"] - sep) <= 0.1 * sep + 0.2:
            info[0] += " PA %d" % w["pa"]
        if multid:
            info.append(multid)
        info.append("HR %d" % hr)
        candidates.append((s["ra"], s["dec"], names, mag1, mag2, info))

    # The Hipparcos doubles: the primary and the component at the separation the double star
    # catalogue gives for the designation. Designations whose separation is not given, or
    # whose companion is no Hipparcos star, are left out rather than paired with a third star.
    groups = {}
    for hip in sorted(wds):
        groups.setdefault(wds[hip]["wds"], []).append(hip)
    for desig in sorted(groups):
        if desig in covered_wds:
            continue
        members = [h for h in groups[desig] if h in stars14]
        if len(members) < 2:
            continue
        members.sort(key=lambda h: (stars14[h][2], h))
        p = members[0]
        given = wds[p]["sep"]
        if not 0 < given < 999:
            continue
        ra1, de1, m1 = stars14[p]
        matches = []
        for q in members[1:]:
            ra2, de2, _ = stars14[q]
            sep = angular_sep(ra1, de1, ra2, de2) * 3600.0
            if abs(sep - given) <= max(1.0, 0.1 * given):
                matches.append((abs(sep - given), q, sep))
        if not matches:
            continue
        _, q, sep = min(matches)
        ra2, de2, m2 = stars14[q]
        if sep < 0.1:
            continue
        pa = position_angle(ra1, de1, ra2, de2)
        hr = cross.get(p, {}).get("hr")
        s = bsc.get(hr) if hr else None
        names = pair_names(s, p, {"wds": desig}, starnames, discoverers, con.genitive, "", sep)
        info = ['%s" PA %d' % (sep_text(sep), round(pa)), "HIP %d" % p, "HIP %d" % q]
        candidates.append((ra1, de1, names, m1, m2, info))

    candidates.sort(key=lambda c: (split_position(c[0], c[1])[:2], c[1], ",".join(c[2])))
    rows = []
    for i, (ra, dec, names, m1, m2, info) in enumerate(candidates, 1):
        if m2 < m1:
            m1, m2 = m2, m1
        mag = "%s,%s" % (mag_text(m1), mag_text(m2))
        rows.append(object_row("Double Star", i, ",".join(n.replace(",", " ") for n in names),
                               "Double Star", con.name(ra, dec), mag, ", ".join(info), ra, dec))
    return rows


ALIGNMENT_LIMIT = 2.15
AUTO_LIMIT = 1.5
POLARIS_HIP = 11767


def build_map_stars(stars6, starnames):
    rows = []
    chosen = []
    for hip in sorted(stars6, key=lambda h: (stars6[h][2], h)):
        ra, dec, mag = stars6[hip]
        name = starnames.get(hip, "")
        is_align = bool(name) and (mag <= ALIGNMENT_LIMIT or hip == POLARIS_HIP)
        # One alignment star per point of light: Toliman sits beside Rigil Kentaurus.
        if is_align and any(angular_sep(ra, dec, r2, d2) < 0.1 for r2, d2 in chosen):
            is_align = False
        if is_align:
            chosen.append((ra, dec))
        is_auto = is_align and (mag <= AUTO_LIMIT or hip == POLARIS_HIP)
        h, m, s, d, dm = split_position(ra, dec)
        rows.append((h, m, s, d, dm, round(mag, 2), int(is_align), name if is_align else "",
                     int(is_auto)))
    return rows


# ---------------------------------------------------------------- writing

TEXT = "TEXT COLLATE NOCASE"
# Lists and the user's table keep ObjectNum as typed ("0012", "        12", "NGC 7000-A") and
# sort it by its leading number through the program's collation.
USER_OBJECTNUM = "TEXT COLLATE ObjectNumber"
COMMON_COLUMNS_DDL = ("Category {t}, ObjectNum {n}, Name {t}, Type {t}, Constellation {t}, "
                      "Magnitude {t}, Info {t}, RAHour REAL, RAMinute REAL, DecSign {t}, "
                      "DecDeg REAL, DecMinute REAL")
COMMON_DDL = COMMON_COLUMNS_DDL.format(t=TEXT, n="NUMERIC")
USER_DDL = COMMON_COLUMNS_DDL.format(t=TEXT, n=USER_OBJECTNUM)
OBJECTS_DDL = ("CREATE TABLE Objects (DisplayOrder INTEGER, Goto {t}, Category {t}, "
               "ObjectNum {n}, Name {t}, Type {t}, Constellation {t}, Magnitude {t}, "
               "RAHour REAL, RAMinute REAL, DecSign {t}, DecDeg REAL, DecMinute REAL, Info {t}, "
               "Observed {t})").format(t=TEXT, n=USER_OBJECTNUM)


def object_number_key(text):
    """The order of the program's ObjectNumber collation, as a sort key."""
    t = text.strip(" ")
    m = re.match(r"\d+(\.\d+)?", t)
    if m:
        return (0, float(m.group(0)), t[m.end():].lower(), t.lower(), text.lower())
    return (1, 0.0, "", t.lower(), text.lower())


def collate_object_number(a, b):
    ka, kb = object_number_key(a), object_number_key(b)
    return (ka > kb) - (ka < kb)


def fresh_db(path):
    if os.path.exists(path):
        os.remove(path)
    db = sqlite3.connect(path)
    db.create_collation("ObjectNumber", collate_object_number)
    db.execute("PRAGMA page_size = 4096")
    return db


def finish_db(db):
    db.commit()
    db.execute("VACUUM")
    db.close()


def write_catalog(path, tables, map_stars, info):
    db = fresh_db(path)
    for name, rows in tables:
        db.execute("CREATE TABLE %s (%s)" % (name, COMMON_DDL))
        db.executemany("INSERT INTO %s VALUES (%s)" % (name, ",".join("?" * 12)), rows)
    db.execute("CREATE TABLE MapStars (RAHour REAL, RAMinute REAL, DecSign %s, DecDeg REAL, "
               "DecMinute REAL, Magnitude REAL, Alignment INTEGER, AlignmentName %s, "
               "autoalignment INTEGER)" % (TEXT, TEXT))
    db.executemany("INSERT INTO MapStars VALUES (?,?,?,?,?,?,?,?,?)", map_stars)
    db.execute('CREATE VIEW "MapStars to 4_5" AS SELECT RAHour, RAMinute, DecSign, DecDeg, '
               "DecMinute, Magnitude, Alignment, AlignmentName, autoalignment FROM MapStars "
               "WHERE Magnitude <= 4.5")
    db.execute("CREATE TABLE CatalogInfo (Key %s, Value %s)" % (TEXT, TEXT))
    db.executemany("INSERT INTO CatalogInfo VALUES (?, ?)", info)
    finish_db(db)


def write_template(path):
    db = fresh_db(path)
    db.execute(OBJECTS_DDL)
    db.execute("CREATE INDEX ObjectsDisplayOrder ON Objects (DisplayOrder)")
    finish_db(db)


def write_user_template(path):
    db = fresh_db(path)
    db.execute("CREATE TABLE UserObjects (%s)" % USER_DDL)
    finish_db(db)


SOURCES_TEXT = """\
Sources of the shipped catalog data
===================================

TavorineList.mdb, TavorineTemplate.tmp and TavorineUserList.tmp are SQLite 3
databases made by tools/build_catalog.py from the sources below. Run
"python3 tools/build_catalog.py" to make them again.

1. Stellarium data, Debian package stellarium-data {stel}
   Licence: GPL-2.0-or-later. https://stellarium.org
   Taken from it:
   - nebulae/default/catalog.dat: positions (J2000), V and B magnitudes, type,
     morphology, sizes and designations of the deep-sky objects: every row of
     MessierObjects, CaldwellObjects, NGCObjects, ICObjects and DeepSpaceObjects.
   - nebulae/default/names.dat: the common names of deep-sky objects (Name, at
     most three names separated by "; ").
   - stars/default/cross-id.dat: Hipparcos number to SAO, HD and HR numbers
     (StarObjects, DoubleStarObjects).
   - stars/default/wds_hip_part.dat: WDS designations and position angles of
     Hipparcos double stars (DoubleStarObjects).
   - stars/default/extra_name.fab: discoverer designations of double stars
     (STF, STFA, STT, BU, H, HJ ... in DoubleStarObjects).
   - skycultures/western/star_names.fab: proper names of stars (StarObjects,
     DoubleStarObjects, MapStars.AlignmentName).

2. d3-celestial, npm package d3-celestial {d3}
   Licence: BSD-3-Clause. Copyright (c) 2015, Olaf Frohn.
   https://github.com/ofrohn/d3-celestial
   Taken from it:
   - data/stars.6.json: the star field MapStars (Hipparcos stars to magnitude 6).
   - data/stars.8.json: positions and magnitudes of StarObjects.
   - data/stars.14.json: magnitudes and positions of the components of the
     Hipparcos double stars.
   - data/constellations.bounds.json: the IAU constellation boundaries; every
     Constellation value (positions are precessed to B1875, the equinox of the
     boundaries, for the lookup).
   - data/constellations.json: full Latin names and genitives of the
     constellations.

3. Bright Star Catalogue, 5th revised edition (preliminary version)
   Hoffleit, D. and Warren, W. H., Jr., 1991, NASA Astronomical Data Center,
   catalogue V/50. Freely distributable astronomical data; the copy used is
   data/sources/bsc5.dat.
   Taken from it: Bayer and Flamsteed names, spectral types (StarObjects), and
   the double stars with their magnitude difference and separation
   (DoubleStarObjects).

4. Corrections from published references (set in tools/build_catalog.py)
   - Integrated visual magnitudes where the source gives a part or another band:
     Harris, W. E., 1996, AJ 112, 1487, "A Catalog of Parameters for Globular
     Clusters in the Milky Way" (2010 edition): NGC 5139 (Omega Centauri) 3.7,
     NGC 2419 10.4, NGC 3201 6.8, NGC 4372 7.2; de Vaucouleurs et al., 1991,
     Third Reference Catalogue of Bright Galaxies (RC3): NGC 4565 9.6,
     NGC 5005 9.8, NGC 4697 9.3; Hirshfeld, A., Sinnott, R. W. and Ochsenbein,
     F., 1991, Sky Catalogue 2000.0, vol. 2, 2nd ed., Sky Publishing and
     Cambridge University Press: NGC 6514 (M 20) 6.3, NGC 2451 2.8,
     NGC 1275 (C 24) 11.6.
   - Objects Stellarium files under another number of the same object
     (Steinicke, W., Revised NGC and IC): NGC 2372 = NGC 2371, NGC 3184 =
     NGC 3180, NGC 4214 = NGC 4228, NGC 4665 = NGC 4664, NGC 5907 = NGC 5906.
   - NGC 6832, an open cluster of the Herschel 400 missing from the sources,
     from the Astronomical League's Herschel 400 list (position only).

5. Reference for the catalog tests (tests/catalog/tst_catalogdata.cpp)
   The table of well-known objects the tests compare the built catalogs with
   takes positions, magnitudes and kinds from Sky Catalogue 2000.0 (vols. 1 and
   2, as above) as tabled in the SEDS Messier Database (Frommert, H. and
   Kronberg, C., messier.seds.org, with its Caldwell list), globular cluster
   magnitudes from Harris (2010), and double star separations from the
   Washington Double Star Catalog (Mason, B. D. et al., USNO).

Tables
------

MessierObjects, CaldwellObjects, NGCObjects, ICObjects: every numbered object of
the Stellarium catalogue. Where Stellarium has several entries under one number
the first (main) entry is taken. Caldwell 14, the Double Cluster, is one row
midway between NGC 869 and NGC 884. Magnitude is V, else B, else empty; where
V is fainter than B (264 objects, NGC 157 at V 19.0), V measured a part of the
object and B is taken. Info
gives the other designations, the size in arcminutes, the morphology and, where
Type is coarser than the source, the finer kind. Every Type of these four tables
is one of the filter's kinds (below). Greek letters in names are spelled out.

DeepSpaceObjects: the catalogues {dso_list}
(Category as written), and the PGC galaxies that have a common name and no
NGC, IC, Messier or Caldwell number (the Large Magellanic Cloud, the dwarf
galaxies of the Local Group). Other PGC numbers, UGC, ESO, VV and the PN G and
SNR G numbers are left out.

StarObjects: Hipparcos stars brighter than magnitude 8.0 that have an SAO
number; one row per SAO number (the brightest star where two share one).

DoubleStarObjects: the double stars of the Bright Star Catalogue that give a
separation and a magnitude difference (one row per pair: where both components
carry the pair, as ADS pairs or by position and separation, the brighter one is
kept); the ADS pairs whose components A and B the catalogue lists as two stars
without a usable separation (Mizar), with the separation from their positions;
then the Hipparcos doubles of wds_hip_part.dat: the primary and the component
at the separation wds_hip_part.dat gives for the designation (designations
without a separation, or whose companion is no Hipparcos star, are left out),
the separation and position angle computed from the two positions. A WDS pair
already given by the Bright Star Catalogue is not repeated. A discoverer's
number names the pair AB: it is given only for that pair, and the numbers of
the discoverers of close pairs ({close}) only up to {limit:g}". A star with a
superscript in its Bayer name is also named without it (Epsilon-1 Lyrae,
Epsilon Lyrae). ObjectNum is a running number in RA order.

MapStars: stars.6.json. Alignment = 1 for the stars with a proper name of
magnitude {al} or brighter, and Polaris; autoalignment = 1 for those of magnitude
{au} or brighter, and Polaris (the alignment window warns against Polaris in EQ
mode, which it can only do when Polaris is among the automatic stars).
"MapStars to 4_5" is a view of MapStars with Magnitude <= 4.5.

The list template and the user table keep ObjectNum as text, declared
"COLLATE ObjectNumber": the program sorts it by its leading number.

Type values
-----------

The filter tests six exact values. In MessierObjects, CaldwellObjects,
NGCObjects and ICObjects every Type is one of them, with the finer kind in Info:

{filter_types}

Messier and Caldwell rows of Stellarium's "cluster with nebulosity" are
"Open Cluster" when they have a Trumpler class and "Nebula" otherwise, since the
filter of those pages knows no "Cluster Nebulosity". M 24 (a star cloud filed as
a cluster) is "Open Cluster" (Info: star cloud); M 40 is "Open Cluster" (Info:
double star).

DeepSpaceObjects, whose page filters on magnitude only, keeps finer kinds:

{types}
"""


def main():
    fetch_sources()
    stel_version, d3_version = source_versions()
    con = ConstellationFinder(os.path.join(D3, "constellations.bounds.json"),
                              os.path.join(D3, "constellations.json"))
    version, edition, recs = read_stellarium_dso(os.path.join(STEL, "nebulae", "default",
                                                              "catalog.dat"))
    names = read_dso_names(os.path.join(STEL, "nebulae", "default", "names.dat"), recs)
    fix_magnitudes(recs)
    messier, caldwell, ngc, ic = build_dso_tables(recs, names, con)
    deep = build_deep_sky(recs, names, con)

    bsc = read_bsc(BSC_FILE)
    starnames = read_star_names(os.path.join(STEL, "skycultures", "western", "star_names.fab"))
    cross = read_cross_id(os.path.join(STEL, "stars", "default", "cross-id.dat"))
    wds = read_wds(os.path.join(STEL, "stars", "default", "wds_hip_part.dat"))
    discoverers = read_discoverer_names(os.path.join(STEL, "stars", "default",
                                                     "extra_name.fab"))
    stars6 = read_d3_stars(os.path.join(D3, "stars.6.json"))
    stars8 = read_d3_stars(os.path.join(D3, "stars.8.json"))
    stars14 = read_d3_stars(os.path.join(D3, "stars.14.json"))

    star_rows = build_stars(stars8, cross, bsc, starnames, con)
    doubles = build_doubles(bsc, cross, wds, stars14, starnames, discoverers, con)
    map_stars = build_map_stars(stars6, starnames)

    tables = [("MessierObjects", messier), ("CaldwellObjects", caldwell),
              ("NGCObjects", ngc), ("ICObjects", ic), ("DeepSpaceObjects", deep),
              ("StarObjects", star_rows), ("DoubleStarObjects", doubles)]
    mtimes = [os.path.getmtime(p) for p in (
        os.path.join(STEL, "nebulae", "default", "catalog.dat"),
        os.path.join(D3, "stars.8.json"))]
    import datetime
    source_date = datetime.datetime.fromtimestamp(max(mtimes), datetime.timezone.utc)
    info = [("SourceDate", source_date.strftime("%Y-%m-%d")),
            ("StellariumData", stel_version),
            ("StellariumCatalog", "%s %s" % (version, edition)),
            ("D3Celestial", d3_version),
            ("BrightStarCatalogue", "5th revised edition, 1991")]
    info += [(name, str(len(rows))) for name, rows in tables]
    info += [("MapStars", str(len(map_stars))),
             ("AlignmentStars", str(sum(r[6] for r in map_stars)))]

    write_catalog(os.path.join(DATA, "TavorineList.mdb"), tables, map_stars, info)
    write_template(os.path.join(DATA, "TavorineTemplate.tmp"))
    write_user_template(os.path.join(DATA, "TavorineUserList.tmp"))

    def type_lines(mapping):
        return "\n".join("  %2d %-28s -> %s%s" % (
            code, STELLARIUM_TYPE_NAMES[code], mapping[code][0],
            (" (Info: %s)" % mapping[code][1]) if mapping[code][1] else "")
            for code in sorted(mapping))
    with open(os.path.join(DATA, "SOURCES"), "w", encoding="utf-8", newline="\n") as f:
        f.write(SOURCES_TEXT.format(
            stel=stel_version, d3=d3_version, al=ALIGNMENT_LIMIT, au=AUTO_LIMIT,
            dso_list=", ".join(c for _, c in DEEP_SKY_CATALOGUES),
            close=", ".join(CLOSE_PAIR_DISCOVERERS), limit=CLOSE_PAIR_LIMIT,
            filter_types=type_lines(FILTER_TYPE_MAP), types=type_lines(TYPE_MAP)))
    for k, v in info:
        print("%-20s %s" % (k, v))


STELLARIUM_TYPE_NAMES = {
    0: "galaxy", 1: "active galaxy", 2: "radio galaxy", 3: "interacting galaxy", 4: "quasar",
    5: "star cluster", 6: "open cluster", 7: "globular cluster", 8: "stellar association",
    9: "star cloud", 10: "nebula", 11: "planetary nebula", 12: "dark nebula",
    13: "reflection nebula", 14: "bipolar nebula", 15: "emission nebula",
    16: "cluster with nebulosity", 17: "HII region", 18: "supernova remnant",
    19: "interstellar matter", 20: "emission object", 21: "BL Lac object", 22: "blazar",
    23: "molecular cloud", 24: "young stellar object", 25: "possible quasar",
    26: "possible planetary nebula", 27: "protoplanetary nebula", 28: "star",
    29: "symbiotic star", 30: "emission-line star", 31: "supernova candidate",
    32: "supernova remnant candidate", 33: "cluster of galaxies", 34: "part of a galaxy",
    35: "region of the sky", 36: "unknown",
}

if __name__ == "__main__":
    main()
