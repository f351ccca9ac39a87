"""Puts generated text into a document."""
import re


def put(path, mark, text):
    """Replaces what stands between the two comments "<!-- mark -->" of the document."""
    with open(path) as file:
        document = file.read()
    comment = f"<!-- {mark} -->"
    with open(path, "w") as file:
        file.write(re.sub(f"{comment}.*{comment}", lambda _: f"{comment}\n{text}\n{comment}", document, flags=re.S))
