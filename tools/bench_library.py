"""The library that the benchmarks of whole programs work on: 200 workspaces of about 8 KB."""
import json
import subprocess
import uuid


def library(quilloctl, directory):
    """One workspace is saved from a scene; its document is written again under 200 identifiers."""
    windows = [{"title": f"A window with a title of its own {i}", "frame": [10 * i, 20, 600, 400]} for i in range(16)]
    scene = {"displays": [{"id": "left", "frame": [0, 0, 1600, 1000], "desktops": 2}],
             "applications": [{"identifier": "org.editor", "name": "Editor", "windows": windows}]}
    with open(directory + "/scene.json", "w") as file:
        json.dump(scene, file)
    command = [quilloctl, "--data-dir", directory + "/data"]
    subprocess.run(command + ["--desktop", f"simulated:{directory}/scene.json", "save", "Workspace"], check=True,
                   stdout=subprocess.DEVNULL)
    text = subprocess.run(command + ["export", "Workspace", directory + "/first.json"], check=True,
                          stdout=subprocess.DEVNULL)
    with open(directory + "/first.json") as file:
        text = file.read()
    identifier = json.loads(text)["id"]
    for number in range(199):
        new = str(uuid.UUID(int=number + 1, version=4))
        with open(f"{directory}/data/workspaces/{new}.json", "w") as file:
            file.write(text.replace(identifier, new.upper()).replace('"Workspace"', f'"Workspace {number}"'))
    return command + ["list"], len(text)
