"""A headless Chromium that tests drive through chromedriver."""
import json
import shutil
import socket
import subprocess
import time
import urllib.request
from contextlib import contextmanager

PROGRAMS = ('chromedriver', 'chromium')
OPTIONS = {'args': ['--headless=new', '--no-sandbox', '--disable-gpu', '--hide-scrollbars'], 'binary': '/usr/bin/chromium'}


class Browser:
    def __init__(self, address):
        self.address = address
        wanted = {'goog:chromeOptions': OPTIONS, 'goog:loggingPrefs': {'browser': 'ALL', 'performance': 'ALL'}}
        self.address += '/session/' + self.post('/session', capabilities={'alwaysMatch': wanted})['sessionId']

    def post(self, path, **values):
        request = urllib.request.Request(self.address + path, json.dumps(values).encode(),
                                         {'Content-Type': 'application/json'})
        return json.load(urllib.request.urlopen(request, timeout=60))['value']

    def run(self, script):
        """What a script of the page returns."""
        return self.post('/execute/sync', script=script, args=[])

    def devtools(self, command, **values):
        return self.post('/goog/cdp/execute', cmd=command, params=values)

    def errors_and_requests(self):
        """The lines of the console, and the addresses that were asked for (not what the page itself holds), since the last call."""
        events = [json.loads(each['message'])['message'] for each in self.post('/se/log', type='performance')]
        return ([each['message'] for each in self.post('/se/log', type='browser')],
                [url for e in events if e['method'] == 'Network.requestWillBeSent'
                 for url in [e['params']['request']['url']] if not url.startswith('data:')])


@contextmanager
def started():
    with socket.socket() as free:
        free.bind(('127.0.0.1', 0))
        port = free.getsockname()[1]
    driver = subprocess.Popen(['chromedriver', f'--port={port}'], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    browser = None
    try:
        for _ in range(100):
            try:
                urllib.request.urlopen(f'http://127.0.0.1:{port}/status', timeout=5)
                break
            except OSError:
                time.sleep(0.1)
        browser = Browser(f'http://127.0.0.1:{port}')
        yield browser
    finally:
        if browser is not None:
            urllib.request.urlopen(urllib.request.Request(browser.address, method='DELETE'), timeout=30)
        driver.terminate()
        driver.wait()


def missing():
    return [program for program in PROGRAMS if shutil.which(program) is None]
