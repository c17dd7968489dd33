#!/usr/bin/python3
"""An independent worked sky for the alignment chart's tests.

Run once by hand (the tests only read the CSV it writes):

    /usr/bin/python3 tools/alignment_crosscheck.py > tests/charts/data/alignment_sky.csv

For one site and observing date it takes the alignment stars of the shipped MapStars, finds
with astropy which of them stand between 20 and 70 degrees, and makes the two tables of best
pairs from astropy's separations: widest first, equal tenths in the order the pairs were
built, five automatic rows, two star rows up to the number of candidates, and the Polaris
note. Needs Debian's python3-astropy; works offline, without refraction.

The program leaves out precession, so its altitudes differ from astropy's by up to half a
degree: the script refuses a moment at which an alignment star stands that close to 20 or 70
degrees, or a separation lies within a millionth of a tenth's rounding boundary.
"""
import math
import os
import sqlite3
import sys
import warnings

from astropy.utils import iers

iers.conf.auto_download = False
iers.conf.auto_max_age = None
iers.conf.iers_degraded_accuracy = "ignore"

import astropy
import astropy.units as u
from astropy.coordinates import AltAz, EarthLocation, SkyCoord
from astropy.time import Time

warnings.simplefilter("ignore")

# Longitude hemisphere, degrees, minutes; latitude hemisphere, degrees, minutes; local date
# and time of UserDate; offset of local time from UTC in hours (east positive).
SITE = ("E", 127, 40, "N", 26, 20, "2026-11-21", "22:00", 9.0)
ALTITUDE_MARGIN = 0.6
SEPARATION_MARGIN = 1e-6


def signed(positive, hemi, deg, minutes):
    v = deg + minutes / 60
    return v if hemi == positive else -v


def coord(row):
    rah, ram, sign, dd, dm = row
    dec = dd + dm / 60
    return SkyCoord(ra=(rah + ram / 60) * 15 * u.deg, dec=(-dec if sign == "-" else dec) * u.deg,
                    frame="icrs")


def main():
    lh, ld, lm, ah, ad, am, date, time, offset = SITE
    db = os.path.join(os.path.dirname(__file__), "..", "data", "TavorineList.mdb")
    rows = sqlite3.connect(db).execute(
        "SELECT RAHour, RAMinute, DecSign, DecDeg, DecMinute, AlignmentName, autoalignment "
        "FROM MapStars WHERE Alignment ORDER BY rowid").fetchall()
    loc = EarthLocation(lon=signed("E", lh, ld, lm) * u.deg, lat=signed("N", ah, ad, am) * u.deg,
                        height=0 * u.m)
    frame = AltAz(obstime=Time(f"{date}T{time}:00", scale="utc") - offset * u.hour, location=loc)

    candidates = []
    for row in rows:
        c = coord(row[:5])
        alt = c.transform_to(frame).alt.deg
        for bound in (20, 70):
            if abs(alt - bound) < ALTITUDE_MARGIN:
                sys.exit(f"{row[5]} stands at {alt:.3f}, too near {bound}: choose another moment")
        if 20 <= alt <= 70:
            candidates.append((row[5], bool(row[6]), c, alt))

    def pairs(auto_only):
        out = []
        for i, (ni, ai, ci, _) in enumerate(candidates):
            for nj, aj, cj, _ in candidates[i + 1:]:
                if auto_only and not (ai and aj):
                    continue
                sep = ci.separation(cj).deg
                tenths = sep * 10
                if abs(tenths - math.floor(tenths) - 0.5) < SEPARATION_MARGIN:
                    sys.exit(f"{ni} - {nj} lie {sep!r} apart, on a rounding boundary: "
                             "choose another moment")
                out.append((f"{ni} - {nj}", sep))
        return sorted(out, key=lambda p: -round(p[1], 1))

    def shown(p):
        return p[0], round(p[1], 1)

    auto, every = pairs(True), pairs(False)
    auto_rows = [shown(p) for p in auto[:5]]
    two_star = [shown(every[i]) if i < len(every) else ("", 0.0)
                for i in range(min(8, len(candidates)))]
    note = any("Polar" in name for name, _ in auto[:max(5, len(two_star))])

    out = sys.stdout
    out.write("# made by: /usr/bin/python3 tools/alignment_crosscheck.py"
              " > tests/charts/data/alignment_sky.csv\n")
    out.write(f"# astropy {astropy.__version__}, ICRS to AltAz, no refraction,"
              " built-in IERS tables\n")
    out.write(f"site,{lh},{ld},{lm},{ah},{ad},{am},{date},{time},{offset:g}\n")
    for name, _, _, alt in candidates:
        out.write(f"candidate,{name},{alt:.4f}\n")
    for name, sep in auto_rows:
        out.write(f"auto,{name},{sep:g}\n")
    for name, sep in two_star:
        out.write(f"twostar,{name},{sep:g}\n")
    out.write(f"note,{int(note)}\n")


if __name__ == "__main__":
    main()
