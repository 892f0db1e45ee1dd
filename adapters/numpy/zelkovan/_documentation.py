"""Docstrings, from the catalogue."""


def documentation(entry, name, names):
    """Usage, answer, parameters, formula, remarks, and an example that doctest can run."""
    _, text = entry["documentation"].split("\n\n", 1)
    for parameter, python in zip(entry["parameters"], names):
        text = text.replace(f"  {parameter['name']}:", f"  {python}:", 1)
    shown = usage(name, names, entry["parameters"])
    return f"{shown}\n\n{text.rstrip()}\n\nExample:\n\n{_example(entry, name, names)}\n"


def usage(name, names, parameters):
    """"pmt(rate, nper, pv, fv=..., type=...)"."""
    shown = [python + "=..." if parameter["optional"] else python for parameter, python in zip(parameters, names)]
    return f"{name}({', '.join(shown)})"


def _example(entry, name, names):
    typed, result = entry["example"]
    arguments = [
        f"{python}={_literal(kind, text)}" for python, kind, text in _example_arguments(entry["parameters"], names, typed)
    ]
    call = f"zelkovan.{name}({', '.join(arguments)})"
    answer = result if entry["result"] == "date" else str(float(result))
    return f"    >>> import zelkovan\n    >>> print({call})\n    {answer}"


def _example_arguments(parameters, names, typed):
    """Each with its kind: `name=text`, or the text alone, in the parameters' order."""
    places = {parameter["name"].lower(): i for i, parameter in enumerate(parameters)}
    for i, word in enumerate(typed.split()):
        name, sign, text = word.partition("=")
        place, text = (places[name.lower()], text) if sign else (i, word)
        yield names[place], parameters[place]["kind"], text


def _literal(kind, text):
    if kind in ("numbers", "dates"):
        return f"[{', '.join(_literal(kind[:-1], one) for one in text.split(','))}]"
    if text.endswith("%"):
        return repr(float(text[:-1] + "e-2"))
    try:
        float(text)
    except ValueError:
        return repr(text)
    return text
