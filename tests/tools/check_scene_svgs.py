"""Every example scene's picture is well-formed XML with one element per entity and per mark.

Usage: check_scene_svgs.py KRGESCENE SCENE_FOLDER
"""
import glob
import json
import os
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

SVG = "{http://www.w3.org/2000/svg}"


def classes(element):
    return element.get("class", "").split()


def check(tool, scene, folder):
    svg_path = os.path.join(folder, os.path.basename(scene) + ".svg")
    run = subprocess.run([tool, "--json", "--svg", svg_path, scene], capture_output=True, text=True, timeout=60)
    problems = []
    if run.returncode != 0:
        problems.append(f"exit status {run.returncode}: {run.stderr}")
    summary = json.loads(run.stdout.strip().splitlines()[-1])["summary"]
    root = ET.parse(svg_path).getroot()  # raises on malformed XML
    if root.tag != SVG + "svg":
        problems.append(f"root element is {root.tag}")
    elements = list(root.iter())
    entities = [e for e in elements if classes(e)[:1] == ["entity"]]
    marks = [e for e in elements if classes(e)[:1] == ["mark"]]
    if len(entities) != summary["entities"]:
        problems.append(f"{len(entities)} entity elements for {summary['entities']} entities")
    if len(marks) != summary["marks"]:
        problems.append(f"{len(marks)} mark elements for {summary['marks']} marks")
    labels = {e.text for e in elements if "label" in classes(e)}
    for entity in entities:
        if entity.get("data-name") not in labels:
            problems.append(f"entity {entity.get('data-name')} has no label")
    for curve in (e for e in marks if "curve" in classes(e)):  # fillets, offsets, tangents
        if curve.get("data-name") not in labels:
            problems.append(f"constructed curve {curve.get('data-name')} has no label")
    for box in (e for e in marks if "box" in classes(e)):
        if not box.get("d", "").endswith("Z"):
            problems.append("a box outline is not closed")
    if not any("scalebar" in classes(e) for e in elements):
        problems.append("no scale bar")
    return problems


def main():
    tool, scenes = sys.argv[1], sorted(glob.glob(os.path.join(sys.argv[2], "*.scene")))
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        for scene in scenes:
            problems = check(tool, scene, folder)
            for problem in problems:
                print(f"{os.path.basename(scene)}: {problem}")
            failed += bool(problems)
    print(f"{len(scenes) - failed} passed, {failed} failed")
    return 1 if failed or not scenes else 0


if __name__ == "__main__":
    sys.exit(main())
