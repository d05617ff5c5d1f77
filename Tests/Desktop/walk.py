"""A walk over what a screen reader finds in a window: each node has a role and states, each control a name."""

from program import Atspi, children

# What a person does something with, or reads on its own: without a name a screen reader would say "button".
NAMED_ROLES = {
    "push button", "toggle button", "check box", "radio button", "combo box", "spin button", "slider", "text", "entry",
    "list", "list item", "table", "table cell", "tree", "tree item", "tree table", "page tab", "menu", "menu item",
    "check menu item", "radio menu item", "frame", "dialog", "alert", "link", "tool bar", "document text",
    "column header", "row header", "heading", "icon", "image", "progress bar", "menu bar item",
}
FOCUSABLE_ROLES = {"text", "entry", "list", "table", "tree", "tree table", "combo box", "spin button", "check box"}
# Rows of lists that are longer than this are alike: the first ones stand for all.
MOST_CHILDREN = 40


class Walk:
    """One walk over the tree of a window, with what is wrong in it."""

    def __init__(self, start, passed_over=()):
        self.seen = 0
        self.roles = set()
        self.faults = []
        nodes = [(start, "")]
        while nodes:
            node, path = nodes.pop()
            path = f"{path}/{node.get_role_name()}«{node.get_name()}»"
            self.look_at(node, path)
            count = 0 if node.get_role_name() in passed_over else node.get_child_count()
            for index in range(min(count, MOST_CHILDREN)):
                child = node.get_child_at_index(index)
                if child is None:
                    self.faults.append(f"child {index} of {count} is missing: {path}")
                else:
                    nodes.append((child, path))

    def look_at(self, node, path):
        states = node.get_state_set()
        role = node.get_role_name()
        # What is not on show is made when it is wanted.
        if not states.contains(Atspi.StateType.SHOWING) and role not in ("menu", "menu item", "check menu item"):
            return
        self.seen += 1
        self.roles.add(role)
        if role in ("", "unknown", "invalid") or node.get_role() == Atspi.Role.INVALID:
            self.faults.append("no role: " + path)
        if not states.contains(Atspi.StateType.VISIBLE) and states.contains(Atspi.StateType.SHOWING):
            self.faults.append("on show and not visible: " + path)
        if role in FOCUSABLE_ROLES and states.contains(Atspi.StateType.SENSITIVE) and \
                not states.contains(Atspi.StateType.FOCUSABLE):
            self.faults.append("out of reach of the keyboard: " + path)
        if role in NAMED_ROLES and not (node.get_name() or "").strip():
            self.faults.append("no name: " + path)
        if "&" in (node.get_name() or ""):
            self.faults.append("a mark of the menus in the name: " + path)


def walk_windows(program):
    """A walk over each window of a program, without its menus."""
    return [Walk(window, passed_over=("menu bar",)) for window in children(program.application())]
