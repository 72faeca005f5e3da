// What the viewer offers beside the scene: its clock, items in the context menu, buttons on the toolbar. A viewer that
// lacks one of them goes without.

function attempt(action) {
    try {
        action();
    } catch (error) {
        warn("not in this viewer: " + error);
    }
}

function listen(makeHandler, onEvent) {
    attempt(function () {
        var handler = makeHandler();
        handler.onEvent = function (event) {
            attempt(function () { onEvent(event); });
        };
        runtime.addEventHandler(handler);
    });
}

function addControls(player, data) {
    var actions = {}, moves = data.clips.length > 0, i;

    function addItem(name, label, action) {
        actions[name] = action;
        attempt(function () { runtime.addCustomMenuItem(name, label, "default", false); });
    }
    function addButton(name, label) {
        attempt(function () { runtime.addCustomToolButton(name, label, "push button"); });
    }
    function addState(name, label) {
        addItem("orvelState" + i, label, function () { player.showState(name); });
    }
    function addSequence(name) {
        addItem("orvelSequence" + i, "Play: " + name, function () { player.playSequence(name); });
    }

    if (moves) {
        addItem("orvelPlay", "Play or pause", function () {
            if (player.isPlaying()) {
                player.pause();
            } else {
                player.play();
            }
        });
        addItem("orvelForward", "One frame on", function () { player.step(1); });
        addItem("orvelBack", "One frame back", function () { player.step(-1); });
        addItem("orvelStop", "Back to the start", player.stop);
        addButton("orvelPlay", "Play or pause");
        addButton("orvelBack", "One frame back");
        addButton("orvelForward", "One frame on");
        addButton("orvelStop", "Back to the start");
        listen(function () { return new TimeEventHandler(); }, player.onTime);
    }
    for (i = 0; i < data.sequences.length; i += 1) {
        addSequence(data.sequences[i].name);
    }
    for (i = 0; i < data.states.length; i += 1) {
        addState(data.states[i].name, "Show: " + data.states[i].name);
    }
    if (data.states.length > 0) {
        addState(null, "Show: as it was");
    }
    if (moves && data.clips[0].camera) {
        attempt(function () { runtime.addCustomMenuItem("orvelCamera", "Follow the camera", "checked", true); });
    }

    listen(function () { return new MenuEventHandler(); }, function (event) {
        if (event.menuItemName === "orvelCamera") {
            player.follow(event.menuItemChecked);
        } else if (actions[event.menuItemName]) {
            actions[event.menuItemName]();
        }
    });
    listen(function () { return new ToolEventHandler(); }, function (event) {
        if (actions[event.toolName]) {
            actions[event.toolName]();
        }
    });
}

function startPlayer(data) {
    var player = null;
    try {
        player = makePlayer(data);
        addControls(player, data);
        if (data.clips.length > 0 && data.autoplay) {
            player.play();
        }
    } catch (error) {
        warn("it could not start: " + error);
    }
    return player;
}
