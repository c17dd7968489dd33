#!/usr/bin/python3
"""Independent places of bright stars on the equator and equinox of date, for the tests of
the J2000 <-> of-date conversion the INDI route uses.

Run once by hand (the tests only read the CSV it writes):

    /usr/bin/python3 tools/ofdate_crosscheck.py > tests/sky/data/ofdate.csv

Needs Debian's python3-astropy. Works offline. The place of date is astropy's TETE frame
seen from the Earth's centre: precession, nutation, aberration and light deflection, the
apparent place an INDI mount's EQUATORIAL_EOD_COORD stands for.
"""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from sky_crosscheck import STARS  # noqa: E402  (also sets astropy up to work offline)

import astropy  # noqa: E402
import astropy.units as u  # noqa: E402
from astropy.coordinates import TETE, SkyCoord  # noqa: E402
from astropy.time import Time  # noqa: E402

# Moments in UTC, from the start of the catalogs' epoch to decades on.
MOMENTS = ["2000-01-01T12:00:00", "2003-06-15T22:10:00", "2026-11-21T11:30:00",
           "2031-03-02T07:45:30", "2049-12-31T23:59:59"]


def main():
    out = sys.stdout
    out.write("# made by: /usr/bin/python3 tools/ofdate_crosscheck.py > tests/sky/data/ofdate.csv\n")
    out.write(f"# astropy {astropy.__version__}, ICRS to TETE at the geocentre, built-in IERS tables\n")
    out.write("utc,star,raHours,decDegrees,raHoursOfDate,decDegreesOfDate\n")
    for moment in MOMENTS:
        frame = TETE(obstime=Time(moment, scale="utc"))
        for name, rah, ram, sign, dd, dm in STARS:
            ra = rah + ram / 60
            dec = (dd + dm / 60) * (-1 if sign == "-" else 1)
            place = SkyCoord(ra=ra * 15 * u.deg, dec=dec * u.deg, frame="icrs").transform_to(frame)
            out.write(f"{moment},{name},{ra:.9f},{dec:.9f},"
                      f"{place.ra.hour:.9f},{place.dec.deg:.9f}\n")


if __name__ == "__main__":
    main()
